#pragma once

#include "playback/engine/MpvOptions.h"

#include <mpv/client.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace ondavia::engine {

/// A value on its way to an mpv property.
using MpvValue = std::variant<bool, std::int64_t, double, std::string>;

/// One mpv instance. Shared by the controller and the video thread; whoever lets go last hands it to the
/// reaper, so no operation here waits for a connection. Any thread.
class MpvHandle final {
public:
    /// A running instance. Raises std::runtime_error when libmpv gives none.
    [[nodiscard]] static std::shared_ptr<MpvHandle> create(const std::vector<MpvOption>& options);
    ~MpvHandle();
    MpvHandle(const MpvHandle&) = delete;
    MpvHandle& operator=(const MpvHandle&) = delete;

    [[nodiscard]] mpv_handle* get() const { return m_handle; }

    /// `wakeup` runs on threads of mpv's whenever `nextEvent` has something; an empty one ends that, and
    /// none runs any more once this returned.
    void setWakeup(std::function<void()> wakeup);
    /// The next event, or one of MPV_EVENT_NONE. One thread only.
    [[nodiscard]] const mpv_event& nextEvent();

    void setProperty(const std::string& name, const MpvValue& value);
    void command(const std::vector<std::string>& arguments);
    void observe(std::uint64_t id, const std::string& name, mpv_format format);
    /// The value comes as MPV_EVENT_GET_PROPERTY_REPLY with this id, unless this returns false.
    bool requestProperty(std::uint64_t id, const std::string& name, mpv_format format);
    void requestHook(const std::string& name);
    void continueHook(std::uint64_t hook);

    /// Playback ends now, in mpv's own time; the instance is released by letting go.
    void beginClosing();

private:
    explicit MpvHandle(mpv_handle* handle)
        : m_handle(handle) {}

    mpv_handle* m_handle;
    std::function<void()> m_wakeup;
    std::atomic<bool> m_closing = false;
    std::shared_ptr<void> m_announcement;
};

} // namespace ondavia::engine
