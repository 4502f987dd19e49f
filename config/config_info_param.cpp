#include "config/config_info_param.h"

#include <memory>
#include <new>
#include <utility>

#include "common/module_log.h"

namespace OHOS::HiviewDFX {

namespace {

using Value = ConfigInfoParamValue;

// Calls `visit` with a pointer to the scalar member that `type` names. False when it names none.
template <typename Visit>
bool VisitScalar(ConfigInfoParamType type, Visit visit)
{
    switch (type) {
    case TYPE_BOOL:
        visit(&Value::boolValue);
        return true;
    case TYPE_CHAR:
        visit(&Value::charValue);
        return true;
    case TYPE_SHORT:
        visit(&Value::shortValue);
        return true;
    case TYPE_INT:
        visit(&Value::intValue);
        return true;
    case TYPE_LONG:
        visit(&Value::longValue);
        return true;
    case TYPE_FLOAT:
        visit(&Value::floatValue);
        return true;
    case TYPE_DOUBLE:
        visit(&Value::doubleValue);
        return true;
    default:
        return false;
    }
}

// The same for the members that own storage; nothing happens for any other type.
template <typename Visit>
void VisitOwner(ConfigInfoParamType type, Visit visit)
{
    switch (type) {
    case TYPE_STRING:
        return visit(&Value::stringValue);
    case TYPE_BOOL_VECTOR:
        return visit(&Value::boolVector);
    case TYPE_CHAR_VECTOR:
        return visit(&Value::charVector);
    case TYPE_SHORT_VECTOR:
        return visit(&Value::shortVector);
    case TYPE_INT_VECTOR:
        return visit(&Value::intVector);
    case TYPE_LONG_VECTOR:
        return visit(&Value::longVector);
    case TYPE_FLOAT_VECTOR:
        return visit(&Value::floatVector);
    case TYPE_DOUBLE_VECTOR:
        return visit(&Value::doubleVector);
    case TYPE_STRING_VECTOR:
        return visit(&Value::stringVector);
    default:
        return;
    }
}

// Starts the lifetime of a union member.
template <typename T, typename... Args>
void Construct(T& member, const Args&... args)
{
    ::new (static_cast<void*>(std::addressof(member))) T(args...);
}

} // namespace

ConfigInfoParamValue::ConfigInfoParamValue(ConfigInfoParamType valueType) : type(valueType)
{
    const auto construct = [this](auto member) {
        Construct(this->*member);
    };
    if (!VisitScalar(type, construct)) {
        VisitOwner(type, construct);
    }
}

ConfigInfoParamValue::ConfigInfoParamValue(const ConfigInfoParamValue& other) : type(other.type)
{
    if (type < TYPE_STRING) {
        InitBaseTypeValue(other);
        return;
    }
    VisitOwner(type, [&](auto member) { Construct(this->*member, other.*member); });
}

void ConfigInfoParamValue::InitBaseTypeValue(const ConfigInfoParamValue& other)
{
    if (!VisitScalar(type, [&](auto member) { Construct(this->*member, other.*member); })) {
        ZELK_ERROR("InitBaseTypeValue: ERROR TYPE");
    }
}

ConfigInfoParamValue::~ConfigInfoParamValue()
{
    VisitOwner(type, [this](auto member) { std::destroy_at(std::addressof(this->*member)); });
}

ConfigInfoParam::ConfigInfoParam(std::string paramName, ConfigInfoParamType paramType)
    : name(std::move(paramName)), type(paramType), value(paramType)
{
}

} // namespace OHOS::HiviewDFX
