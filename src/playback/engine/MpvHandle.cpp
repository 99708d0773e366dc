#include "playback/engine/MpvHandle.h"

#include "base/AppLogger.h"
#include "playback/engine/EngineReaper.h"
#include "playback/engine/PublishedStream.h"

#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace ondavia::engine {
namespace {

const char* wantedLogLevel() {
    const char* level = std::getenv("ONDAVIA_LOG");
    return level != nullptr && std::string_view(level) == "debug" ? "v" : "warn";
}

void report(int status, const std::string& what) {
    if (status < 0) {
        AppLogger::player.error("mpv refused %{public}s: %{public}s", {what, mpv_error_string(status)});
    }
}

template<class... Handlers> struct Overloaded : Handlers... { using Handlers::operator()...; };
template<class... Handlers> Overloaded(Handlers...) -> Overloaded<Handlers...>;

} // namespace

std::shared_ptr<MpvHandle> MpvHandle::create(const std::vector<MpvOption>& options) {
    mpv_handle* raw = mpv_create();
    if (raw == nullptr) {
        throw std::runtime_error("mpv_create failed");
    }
    std::shared_ptr<MpvHandle> handle(new MpvHandle(raw));
    PublishedSource::registerWith(raw);
    for (const auto& [name, value] : options) {
        report(mpv_set_option_string(raw, name.c_str(), value.c_str()), name);
    }
    mpv_request_log_messages(raw, wantedLogLevel());
    if (const int status = mpv_initialize(raw); status < 0) {
        throw std::runtime_error(mpv_error_string(status));
    }
    return handle;
}

MpvHandle::~MpvHandle() {
    setWakeup({});
    beginClosing();
    reap(m_handle, std::move(m_announcement));
}

void MpvHandle::setWakeup(std::function<void()> wakeup) {
    mpv_set_wakeup_callback(m_handle, nullptr, nullptr);
    m_wakeup = std::move(wakeup);
    if (m_wakeup) {
        mpv_set_wakeup_callback(
            m_handle, [](void* self) { static_cast<MpvHandle*>(self)->m_wakeup(); }, this);
    }
}

const mpv_event& MpvHandle::nextEvent() {
    return *mpv_wait_event(m_handle, 0);
}

void MpvHandle::setProperty(const std::string& name, const MpvValue& value) {
    const auto set = [this, &name](mpv_format format, void* data) {
        report(mpv_set_property_async(m_handle, 0, name.c_str(), format, data), name);
    };
    std::visit(Overloaded{[&set](bool flag) {
                              int number = flag ? 1 : 0;
                              set(MPV_FORMAT_FLAG, &number);
                          },
                          [&set](std::int64_t number) { set(MPV_FORMAT_INT64, &number); },
                          [&set](double number) { set(MPV_FORMAT_DOUBLE, &number); },
                          [&set](const std::string& text) {
                              const char* pointer = text.c_str();
                              set(MPV_FORMAT_STRING, static_cast<void*>(&pointer));
                          }},
               value);
}

void MpvHandle::command(const std::vector<std::string>& arguments) {
    std::vector<const char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (const auto& argument : arguments) {
        pointers.push_back(argument.c_str());
    }
    pointers.push_back(nullptr);
    report(mpv_command_async(m_handle, 0, pointers.data()), arguments.front());
}

void MpvHandle::observe(std::uint64_t id, const std::string& name, mpv_format format) {
    report(mpv_observe_property(m_handle, id, name.c_str(), format), name);
}

bool MpvHandle::requestProperty(std::uint64_t id, const std::string& name, mpv_format format) {
    const int status = mpv_get_property_async(m_handle, id, name.c_str(), format);
    report(status, name);
    return status >= 0;
}

void MpvHandle::requestHook(const std::string& name) {
    report(mpv_hook_add(m_handle, 0, name.c_str(), 0), name);
}

void MpvHandle::continueHook(std::uint64_t hook) {
    report(mpv_hook_continue(m_handle, hook), "hook");
}

void MpvHandle::beginClosing() {
    if (m_closing.exchange(true)) {
        return;
    }
    m_announcement = announceClosing();
    command({"stop"});
}

} // namespace ondavia::engine
