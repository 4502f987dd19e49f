// A log service whose operations are JavaScript functions.
#ifndef TESTING_NATIVE_HANDLER_SERVICE_H
#define TESTING_NATIVE_HANDLER_SERVICE_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "environment.h"
#include "value.h"
#include "zelk_service_api/i_zelk_log_service.h"

namespace OHOS::Host {

// Every operation may be called from any thread but the JavaScript thread. It posts its request there and waits for the
// answer, but not longer than the time limit.
class __attribute__((visibility("default"))) HandlerService : public HiviewDFX::IZelkLogService {
public:
    using Service = HiviewDFX::IZelkLogService;

    static constexpr int32_t CODE_GONE = 1001;
    static constexpr int32_t CODE_LATE = 1002;

    struct Request {
        const char* operation;
        std::vector<Value> args;
    };
    struct Reply {
        int32_t code = 0;
        Value answer;            // Nothing leaves the caller's answer untouched.
        bool isFallback = false; // The fallback answers; the members above are ignored.
    };
    // Runs on the JavaScript thread for each request; it calls Answer, now or later, with the id.
    using Handler = std::function<void(napi_env env, uint64_t id, const Request& request)>;

    HandlerService(std::shared_ptr<Environment> environment, Handler handler, sptr<Service> fallback,
                   std::chrono::duration<double, std::milli> limit);

    // Answers a call; ignored when the call has already ended. Any thread.
    void Answer(uint64_t id, Reply reply);

    // Every waiting call and every later one ends with CODE_GONE; handlers are no longer called. Any thread.
    void End();

    const std::shared_ptr<Environment>& Home() const
    {
        return environment_;
    }

    int32_t GetModemLogConfig(std::vector<std::string>& keys, std::vector<std::string>& values) override;
    int32_t GetModemLogDirectPackConfig(std::string& config) override;
    int32_t GetModemLogLogMasks(std::vector<std::string>& masks) override;
    int32_t GetModemLogStatus(bool& status) override;
    int32_t HandleModemLogSwitch(bool on, bool& result) override;
    int32_t HandleModemLogSwitch(bool on, std::vector<std::string>& configs, bool& result) override;
    int32_t SendModemLogCommand(std::string command, bool& result) override;
    int32_t ChangeModemLogConfig(std::vector<std::string>& configs, bool& result) override;

    int32_t GetTcpdumpStatus(bool& status) override;
    int32_t GetTcpdumpConfig(std::vector<std::string> keys, std::vector<std::string>& values) override;
    int32_t ChangeTcpdumpConfig(std::vector<std::string>& configs, bool& result) override;
    int32_t HandleTcpdumpSwitch(bool on, bool& result) override;
    int32_t HandleTcpdumpSwitch(bool on, std::vector<std::string>& configs, bool& result) override;

    int32_t HandleBluetoothCallPcmLogSwitch(bool on) override;
    int32_t FetchRemoteDevicesLogs(const std::string& request, std::string& response, int64_t value) override;
    int32_t QueryRemoteDevicesLogs(const std::string& request, std::string& response) override;
    int32_t GetRemoteDevicesList(std::string& response) override;
    int32_t QueryProtocolData(const std::string& request, std::string& response) override;

private:
    // A thread that waits for the answer to its call.
    struct Waiting {
        void End(Reply with);

        std::condition_variable changed;
        bool isAnswered = false;
        Reply reply;
    };

    // Returns the code and writes the answer to `out`; if the fallback answers, calls `ask` with it.
    template <typename Out, typename Ask>
    int32_t Call(Request request, Out& out, Ask ask);
    // What the handler answers.
    Reply ReplyTo(Request request);
    // The id under which `waiting` can be answered from now on.
    uint64_t Enlist(Waiting& waiting);
    void Post(uint64_t id, Request request);
    Reply Wait(uint64_t id, Waiting& waiting, std::chrono::steady_clock::time_point deadline);
    bool IsOpen();

    const std::shared_ptr<Environment> environment_;
    const Handler handler_;
    const sptr<Service> fallback_;
    const std::chrono::duration<double, std::milli> limit_;

    std::mutex mutex_; // Guards everything below.
    uint64_t lastId_ = 0;
    std::unordered_map<uint64_t, Waiting*> waiting_;
    bool hasEnded_ = false;
};

} // namespace OHOS::Host

#endif // TESTING_NATIVE_HANDLER_SERVICE_H
