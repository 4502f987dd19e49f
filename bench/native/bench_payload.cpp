// A payload's text against the same values inserted into a string stream by hand.
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "payload/payload.h"
#include "rounds.h"

namespace {

using OHOS::HiviewDFX::Payload;

// What both write.
struct Values {
    int32_t number = 4096;
    int64_t large = 1234567890123;
    uint8_t small = 200;
    double load = 0.25;
    std::string text = "modem log of the second processor";
    std::vector<int32_t> numbers = {1, 22, 333, 4444};
    std::vector<std::string> names = {"ap", "cp"};
    int32_t depth = 3;
};

template <typename T>
void InsertList(std::ostream& stream, const std::vector<T>& list, const char* quote)
{
    const char* separator = "";
    stream << '[';
    for (const T& element : list) {
        stream << separator << quote << element << quote;
        separator = ",";
    }
    stream << ']';
}

std::string ByHand(const Values& values)
{
    std::ostringstream stream;
    stream << "{\"number\":" << values.number << ",\"large\":" << values.large
           << ",\"small\":" << static_cast<unsigned int>(values.small) << ",\"load\":" << values.load
           << ",\"text\":" << std::quoted(values.text) << ",\"numbers\":";
    InsertList(stream, values.numbers, "");
    stream << ",\"names\":";
    InsertList(stream, values.names, "\"");
    stream << ",\"inner\":{\"depth\":" << values.depth << "}}";
    return stream.str();
}

std::string Text(const Payload& payload)
{
    std::ostringstream stream;
    stream << payload;
    return stream.str();
}

} // namespace

int main()
{
    const Values values;
    Payload payload;
    payload.Add("number", values.number)
        .Add("large", values.large)
        .Add("small", values.small)
        .Add("load", values.load)
        .Add("text", values.text)
        .Add("numbers", values.numbers)
        .Add("names", values.names)
        .Add("inner", Payload().Add("depth", values.depth));
    if (Text(payload) != ByHand(values)) {
        std::fprintf(stderr, "bench_payload: the texts differ:\n%s\n%s\n", Text(payload).c_str(),
                     ByHand(values).c_str());
        return 1;
    }
    Bench::Compare(
        "payload", [&] { Bench::Keep(Text(payload).data()); }, 1, [&] { Bench::Keep(ByHand(values).data()); }, 1);
    return 0;
}
