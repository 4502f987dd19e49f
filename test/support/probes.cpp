// Linked into the test build of the module: calls the helpers that log a missing argument without one, as no function
// of the module does.
#include "napi/util/napi_util.h"
#include "test/support/control.h"

namespace {

using namespace OHOS::HiviewDFX;

void CallWithoutData()
{
    NapiUtil::HandleAsyncWork(nullptr, static_cast<BaseContext*>(nullptr), "Nothing", nullptr, nullptr);
    NapiUtil::Handle2ValueCallback(nullptr, nullptr, nullptr);
    NapiUtil::GetElement(nullptr, nullptr, 0);
}

__attribute__((constructor)) void RegisterProbe()
{
    ZelkTest::SetProbe(CallWithoutData);
}

} // namespace
