#include "playback/engine/MpvHandle.h"

#include "base/AppLogger.h"
#include "playback/engine/EngineReaper.h"
#include "playback/engine/PublishedStream.h"

#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <utility>

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

/// Ids are small, so that the owner's number has room above them.
constexpr unsigned ownerShift = 32;
constexpr std::uint64_t idMask = (std::uint64_t{1} << ownerShift) - 1;
/// Replies to the loading of files, apart from the ids of everything else.
constexpr std::uint64_t firstLoad = std::uint64_t{1} << 31;

/// The text is mpv's to read, not to change.
mpv_node textNode(const std::string& text) {
    mpv_node node{};
    node.format = MPV_FORMAT_STRING;
    node.u.string = const_cast<char*>(text.c_str());
    return node;
}

/// Of the result of a command, whose keys mpv names.
std::optional<std::int64_t> numberUnder(std::string_view key, const mpv_node& result) {
    if (result.format != MPV_FORMAT_NODE_MAP) {
        return std::nullopt;
    }
    const mpv_node_list& list = *result.u.list;
    for (int index = 0; index < list.num; ++index) {
        if (key == list.keys[index] && list.values[index].format == MPV_FORMAT_INT64) {
            return list.values[index].u.int64;
        }
    }
    return std::nullopt;
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

mpv_event MpvHandle::nextEvent() {
    mpv_event event = *mpv_wait_event(m_handle, 0);
    while (event.event_id != MPV_EVENT_NONE && !concernsOwner(event)) {
        event = *mpv_wait_event(m_handle, 0);
    }
    return event;
}

std::uint64_t MpvHandle::marked(std::uint64_t id) const {
    return (m_owner << ownerShift) | id;
}

bool MpvHandle::concernsOwner(mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
        takeLoadReply(event);
        return false;
    case MPV_EVENT_GET_PROPERTY_REPLY:
    case MPV_EVENT_PROPERTY_CHANGE: {
        const bool isOwners = event.reply_userdata >> ownerShift == m_owner;
        event.reply_userdata &= idMask;
        return isOwners;
    }
    case MPV_EVENT_LOG_MESSAGE:
        return m_owner == 0 || m_hasBegun;
    default:
        return concernsFile(event);
    }
}

bool MpvHandle::concernsFile(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_START_FILE:
        m_hasBegun = m_entry == static_cast<const mpv_event_start_file*>(event.data)->playlist_entry_id;
        return m_hasBegun;
    case MPV_EVENT_END_FILE:
        return m_entry == static_cast<const mpv_event_end_file*>(event.data)->playlist_entry_id;
    case MPV_EVENT_HOOK:
        m_hook = static_cast<const mpv_event_hook*>(event.data)->id;
        if (!m_hasBegun) {
            continueHook();
        }
        return m_hasBegun;
    default:
        return m_hasBegun;
    }
}

void MpvHandle::takeLoadReply(const mpv_event& event) {
    if (event.reply_userdata != marked(firstLoad + m_loads)) {
        return;
    }
    report(event.error, "loadfile");
    m_entry = numberUnder("playlist_entry_id", static_cast<const mpv_event_command*>(event.data)->result);
}

void MpvHandle::load(const std::string& address, const std::vector<MpvOption>& options) {
    m_hasBegun = false;
    m_entry.reset();
    // While the sound output still belongs to what plays: it would not hear of it later.
    setProperty("pause", false);
    std::vector<mpv_node> values;
    std::vector<char*> names;
    for (const auto& [name, value] : options) {
        names.push_back(const_cast<char*>(name.c_str()));
        values.push_back(textNode(value));
    }
    mpv_node_list map{static_cast<int>(values.size()), values.data(), names.data()};
    mpv_node own{};
    own.format = MPV_FORMAT_NODE_MAP;
    own.u.list = &map;
    const std::string command = "loadfile";
    const std::string flag = "replace";
    mpv_node words[] = {textNode(command), textNode(address), textNode(flag), own};
    mpv_node_list list{4, words, nullptr};
    mpv_node whole{};
    whole.format = MPV_FORMAT_NODE_ARRAY;
    whole.u.list = &list;
    report(mpv_command_node_async(m_handle, marked(firstLoad + ++m_loads), &whole), command);
    continueHook();
}

void MpvHandle::unload() {
    m_hasBegun = false;
    m_entry.reset();
    command({"stop"});
    continueHook();
}

void MpvHandle::changeOwner() {
    setWakeup({});
    for (const std::uint64_t id : std::exchange(m_observed, {})) {
        mpv_unobserve_property(m_handle, id);
    }
    ++m_owner;
    m_hasBegun = false;
    m_entry.reset();
    setProperty("pause", true);
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
    m_observed.push_back(marked(id));
    report(mpv_observe_property(m_handle, marked(id), name.c_str(), format), name);
}

bool MpvHandle::requestProperty(std::uint64_t id, const std::string& name, mpv_format format) {
    const int status = mpv_get_property_async(m_handle, marked(id), name.c_str(), format);
    report(status, name);
    return status >= 0;
}

void MpvHandle::requestHook(const std::string& name) {
    report(mpv_hook_add(m_handle, 0, name.c_str(), 0), name);
}

void MpvHandle::continueHook() {
    if (m_hook) {
        report(mpv_hook_continue(m_handle, *m_hook), "hook");
        m_hook.reset();
    }
}

void MpvHandle::beginClosing() {
    if (m_closing.exchange(true)) {
        return;
    }
    m_announcement = announceClosing();
    command({"stop"});
}

} // namespace ondavia::engine
