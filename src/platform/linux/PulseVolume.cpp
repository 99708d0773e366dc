#include "platform/linux/PulseVolume.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <mutex>
#include <optional>
#include <thread>

namespace ondavia {
namespace {

constexpr int microsecondsBetweenAttempts = 5'000'000;
constexpr const char* defaultOutput = "@DEFAULT_SINK@";

using Clock = std::chrono::steady_clock;

/// Since when an attempt has been under way; the clock's beginning while none is.
std::atomic<Clock::time_point> attemptBegan{Clock::time_point()};

/// Nobody waits for what is asked of the server.
void forget(pa_operation* operation) {
    if (operation != nullptr) {
        pa_operation_unref(operation);
    }
}

/// The default output as the server described it last.
struct Output final {
    std::uint32_t index;
    pa_cvolume volume;
    bool isMuted;
};

} // namespace

/// The connection, all of it on one thread but for what the mutex guards.
class PulseVolume::Link final {
public:
    Link()
        : m_loop(pa_mainloop_new())
        , m_thread([this](const std::stop_token& stop) { run(stop); }) {}
    ~Link() {
        m_thread.request_stop();
        pa_mainloop_wakeup(m_loop);
        m_thread.join();
        pa_mainloop_free(m_loop);
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    [[nodiscard]] float known() const {
        const std::lock_guard lock(m_mutex);
        return m_known;
    }
    void wish(float volume) {
        {
            const std::lock_guard lock(m_mutex);
            m_known = volume;
            m_wish = volume;
        }
        pa_mainloop_wakeup(m_loop);
    }

private:
    void run(const std::stop_token& stop) {
        connect();
        while (!stop.stop_requested()) {
            pa_mainloop_prepare(m_loop, m_context != nullptr ? -1 : microsecondsBetweenAttempts);
            pa_mainloop_poll(m_loop);
            pa_mainloop_dispatch(m_loop);
            if (m_context == nullptr) {
                connect();
            } else if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context))) {
                disconnect();
            } else {
                grantWish();
            }
        }
        disconnect();
    }

    void connect() {
        m_context = pa_context_new(pa_mainloop_get_api(m_loop), "Ondavia");
        pa_context_set_state_callback(
            m_context, [](pa_context*, void* self) { of(self).stateChanged(); }, this);
        attemptBegan = Clock::now();
        if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
            disconnect();
        }
    }

    void disconnect() {
        if (m_context == nullptr) {
            return;
        }
        attemptBegan = Clock::time_point();
        pa_context_set_state_callback(m_context, nullptr, nullptr);
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
        m_context = nullptr;
        m_isSetting = false;
        noOutput();
    }

    void stateChanged() {
        if (pa_context_get_state(m_context) == PA_CONTEXT_READY) {
            attemptBegan = Clock::time_point();
            pa_context_set_subscribe_callback(
                m_context,
                [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) { of(self).ask(); },
                this);
            constexpr auto outputs =
                static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER);
            forget(pa_context_subscribe(m_context, outputs, nullptr, nullptr));
            ask();
        }
    }

    void ask() {
        forget(pa_context_get_sink_info_by_name(
            m_context, defaultOutput,
            [](pa_context*, const pa_sink_info* sink, int position, void* self) {
                if (sink != nullptr) {
                    of(self).take({sink->index, sink->volume, sink->mute != 0});
                } else if (position < 0) {
                    of(self).noOutput();
                }
            },
            this));
    }

    /// What was wished for meanwhile is later than what the server says.
    void take(const Output& output) {
        m_output = output;
        const double volume = static_cast<double>(pa_cvolume_max(&output.volume)) / PA_VOLUME_NORM;
        const std::lock_guard lock(m_mutex);
        if (!m_wish && !m_isSetting) {
            m_known = output.isMuted ? 0.0F : static_cast<float>(std::min(volume, 1.0));
        }
    }

    void noOutput() {
        m_output.reset();
        const std::lock_guard lock(m_mutex);
        m_wish.reset();
    }

    /// One at a time: of what is wished for while the server works on one, only the last counts.
    void grantWish() {
        if (m_isSetting || !m_output) {
            return;
        }
        if (const auto volume = takeWish()) {
            set(*volume);
        }
    }

    [[nodiscard]] std::optional<float> takeWish() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_wish, std::nullopt);
    }

    /// The balance of the channels stays.
    void set(float fraction) {
        pa_cvolume volume = m_output->volume;
        pa_cvolume_scale(&volume, static_cast<pa_volume_t>(std::lround(fraction * PA_VOLUME_NORM)));
        if (m_output->isMuted && fraction > 0) {
            forget(pa_context_set_sink_mute_by_index(m_context, m_output->index, 0, nullptr, nullptr));
        }
        pa_operation* operation = pa_context_set_sink_volume_by_index(
            m_context, m_output->index, &volume,
            [](pa_context*, int, void* self) {
                of(self).m_isSetting = false;
                of(self).ask();
            },
            this);
        m_isSetting = operation != nullptr;
        forget(operation);
    }

    static Link& of(void* self) { return *static_cast<Link*>(self); }

    mutable std::mutex m_mutex;
    float m_known = 1.0F;
    std::optional<float> m_wish;

    pa_mainloop* m_loop;
    pa_context* m_context = nullptr;
    std::optional<Output> m_output;
    bool m_isSetting = false;
    std::jthread m_thread;
};

PulseVolume::PulseVolume() = default;
PulseVolume::~PulseVolume() = default;

PulseVolume::Link& PulseVolume::link() {
    if (!m_link) {
        m_link = std::make_unique<Link>();
    }
    return *m_link;
}

void PulseVolume::setVolume(float volume) {
    if (!std::isnan(volume)) {
        link().wish(std::clamp(volume, 0.0F, 1.0F));
    }
}

float PulseVolume::outputVolume() {
    return link().known();
}

bool PulseVolume::isServerSilent() {
    constexpr std::chrono::seconds patience{2};
    const Clock::time_point began = attemptBegan;
    return began != Clock::time_point() && Clock::now() - began > patience;
}

} // namespace ondavia
