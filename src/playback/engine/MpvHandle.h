#pragma once

#include "playback/engine/MpvOptions.h"

#include <mpv/client.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace ondavia::engine {

/// A value on its way to an mpv property.
using MpvValue = std::variant<bool, std::int64_t, double, std::string>;

/// One mpv instance, which plays one file after another for one owner after another. Shared by the
/// controller and the video thread; whoever lets go last hands it to the reaper, so no operation here waits
/// for a connection. Any thread, but for the events and what concerns owners and files: the main thread.
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
    /// The next event that concerns this owner and the file that it loaded last, or one of MPV_EVENT_NONE.
    /// Valid until the next call.
    [[nodiscard]] mpv_event nextEvent();

    /// Opens `address` with these options of its own, in place of what is loaded: that is closed first. It
    /// does not stand still.
    void load(const std::string& address, const std::vector<MpvOption>& options);
    /// Nothing is loaded any more.
    void unload();
    /// The next owner hears nothing of what was asked for, observed and loaded so far. What plays stands
    /// still.
    void changeOwner();

    void setProperty(const std::string& name, const MpvValue& value);
    void command(const std::vector<std::string>& arguments);
    void observe(std::uint64_t id, const std::string& name, mpv_format format);
    /// The value comes as MPV_EVENT_GET_PROPERTY_REPLY with this id, unless this returns false.
    bool requestProperty(std::uint64_t id, const std::string& name, mpv_format format);
    void requestHook(const std::string& name);
    /// mpv goes on from the hook that was told last.
    void continueHook();

    /// Playback ends now, in mpv's own time; the instance is released by letting go.
    void beginClosing();

private:
    explicit MpvHandle(mpv_handle* handle)
        : m_handle(handle) {}

    /// `id` as mpv is told it.
    [[nodiscard]] std::uint64_t marked(std::uint64_t id) const;
    /// Whether the owner is to hear of it; `event` then bears the owner's id.
    bool concernsOwner(mpv_event& event);
    bool concernsFile(const mpv_event& event);
    void takeLoadReply(const mpv_event& event);

    mpv_handle* m_handle;
    std::function<void()> m_wakeup;
    std::uint64_t m_owner = 0;
    std::vector<std::uint64_t> m_observed;
    /// Counts the files, so that each has a reply of its own.
    std::uint64_t m_loads = 0;
    /// mpv's number of the file that was loaded last; absent until mpv has told it.
    std::optional<std::int64_t> m_entry;
    /// That file has begun: what mpv tells now is of it.
    bool m_hasBegun = false;
    std::optional<std::uint64_t> m_hook;
    std::atomic<bool> m_closing = false;
    std::shared_ptr<void> m_announcement;
};

} // namespace ondavia::engine
