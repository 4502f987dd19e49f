#include "log_service_adaptor.h"

#include <algorithm>
#include <cerrno>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "dbus_names.h"
#include "message_values.h"
#include "service/reference/service_limits.h"

namespace OHOS::Host {

namespace {

struct Property {
    const char* name;
    bool Switches::*value;
};

constexpr Property PROPERTIES[] = {
    {"ModemLogOn", &Switches::modemLog},
    {"TcpdumpOn", &Switches::tcpdump},
    {"BluetoothCallPcmLogOn", &Switches::bluetoothCallPcmLog},
};

// Reads the arguments of a call. Anything past the service's limits stays in the message, so that a call cannot take
// much more memory than they allow.
class ArgumentReader {
public:
    explicit ArgumentReader(sd_bus_message* call) : call_(call) {}

    // False when the argument is of another type, or too large.
    bool Read(Type type, Value& value)
    {
        switch (type) {
        case Type::TEXT:
            return ReadText(value.emplace<std::string>());
        case Type::TEXTS:
            return ReadTexts(value.emplace<Texts>());
        default:
            return Host::Read(call_, type, value);
        }
    }

    bool IsTooLarge() const
    {
        return size_ > MAX_REQUEST_SIZE;
    }

private:
    // Neither an item nor the answer to a key is shorter than this, so a list of more texts is refused in any case.
    static constexpr size_t LEAST_TEXT_SIZE = std::string_view(R"({"configKey":"","value":})").size();

    bool ReadText(std::string& value)
    {
        const char* text = nullptr;
        if (sd_bus_message_read_basic(call_, SD_BUS_TYPE_STRING, &text) <= 0 || !Admit(text)) {
            return false;
        }
        value = text;
        return true;
    }

    bool ReadTexts(Texts& value)
    {
        return ReadEach(call_, [this, &value](const char* text) {
            if (!Admit(text)) {
                return false;
            }
            value.emplace_back(text);
            return true;
        });
    }

    bool Admit(std::string_view text)
    {
        size_ += std::max(text.size(), LEAST_TEXT_SIZE);
        return !IsTooLarge();
    }

    sd_bus_message* const call_;
    size_t size_ = 0;
};

// What a refused call answers with its code: `false`, or an empty answer.
Value EmptyAnswer(Type type)
{
    switch (type) {
    case Type::BOOL:
        return false;
    case Type::INT64:
        return int64_t{0};
    case Type::TEXT:
        return std::string();
    case Type::TEXTS:
        return Texts();
    case Type::NOTHING:
        break;
    }
    return Nothing();
}

int Reply(sd_bus_message* call, const Outcome& outcome)
{
    sd_bus_message* raw = nullptr;
    int result = sd_bus_message_new_method_return(call, &raw);
    const BusMessage reply(raw);
    result = result < 0 ? result : Append(raw, outcome.code);
    result = result < 0 ? result : Append(raw, outcome.answer);
    return result < 0 ? result : sd_bus_send(nullptr, raw, nullptr);
}

int OnCall(sd_bus_message* call, void* adaptor, sd_bus_error*)
{
    const Operation* operation = FindOperation(sd_bus_message_get_member(call));
    try {
        return operation == nullptr ? 0 : static_cast<LogServiceAdaptor*>(adaptor)->Serve(*operation, call);
    } catch (const std::bad_alloc&) {
        return -ENOMEM;
    }
}

int OnGet(sd_bus*, const char*, const char*, const char* name, sd_bus_message* reply, void* adaptor, sd_bus_error*)
{
    return static_cast<const LogServiceAdaptor*>(adaptor)->ReadProperty(name, reply);
}

// The properties whose values differ have changed. The bus passes the signals on to those who have asked for them.
void TellOfChanges(const Switches& before, const Switches& after, sd_bus* bus)
{
    for (const Property& property : PROPERTIES) {
        if (before.*property.value != after.*property.value) {
            sd_bus_emit_properties_changed(bus, SERVICE_PATH, SERVICE_INTERFACE, property.name, nullptr);
        }
    }
}

// The build generates the rows of the methods and properties from data/dev.zelk.LogService1.xml.
constexpr sd_bus_vtable VTABLE[] = {
    SD_BUS_VTABLE_START(0),
#include "dev.zelk.LogService1.rows"
    SD_BUS_VTABLE_END,
};

} // namespace

int LogServiceAdaptor::Export(sd_bus* bus)
{
    sd_bus_slot* slot = nullptr;
    const int result = sd_bus_add_object_vtable(bus, &slot, SERVICE_PATH, SERVICE_INTERFACE, VTABLE, this);
    slot_.reset(slot);
    return result;
}

int LogServiceAdaptor::Serve(const Operation& operation, sd_bus_message* call)
{
    ArgumentReader reader(call);
    ArgumentValues arguments;
    bool isRead = true;
    for (size_t i = 0; i < arguments.size() && isRead; ++i) {
        isRead = reader.Read(operation.arguments[i], arguments[i]);
    }
    if (!isRead && !reader.IsTooLarge()) {
        return -EBADMSG;
    }
    const Switches before = readSwitches_();
    const Outcome outcome = isRead ? operation.call(service_, arguments)
                                   : Outcome{CODE_REFUSED, EmptyAnswer(operation.answer), std::nullopt};
    const int result = Reply(call, outcome);
    TellOfChanges(before, readSwitches_(), sd_bus_message_get_bus(call));
    observer_(operation.method, outcome.code);
    return result;
}

int LogServiceAdaptor::ReadProperty(std::string_view name, sd_bus_message* reply) const
{
    const Switches switches = readSwitches_();
    for (const Property& property : PROPERTIES) {
        if (name == property.name) {
            return Append(reply, Value(switches.*property.value));
        }
    }
    return -ENOENT;
}

} // namespace OHOS::Host
