#include "platform/linux/LogindBrightness.h"

#include "platform/linux/MessageBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileSystemWatcher>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <utility>

namespace ondavia {
namespace {

/// The number that a file of the kernel's holds.
std::optional<std::uint32_t> numberIn(const std::filesystem::path& path) {
    std::ifstream file(path);
    std::uint32_t number = 0;
    return file >> number ? std::optional(number) : std::nullopt;
}

struct Backlight final {
    std::filesystem::path folder;
    /// Steps; at least 1.
    std::uint32_t maximum = 1;
    int rank = 0;
};

std::optional<Backlight> backlightIn(const std::filesystem::path& folder) {
    const auto maximum = numberIn(folder / "max_brightness");
    if (!maximum || *maximum == 0 || !numberIn(folder / "brightness")) {
        return std::nullopt;
    }
    std::string type;
    std::ifstream(folder / "type") >> type;
    return Backlight{folder, *maximum, type == "firmware" ? 0 : type == "platform" ? 1 : 2};
}

std::optional<Backlight> findBacklight(const std::filesystem::path& folder) {
    std::optional<Backlight> best;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(folder, none)) {
        const auto found = backlightIn(entry.path());
        const auto order = [](const Backlight& light) { return std::pair(light.rank, light.folder); };
        if (found && (!best || order(*found) < order(*best))) {
            best = found;
        }
    }
    return best;
}

class LogindBrightness final : public ScreenBrightness {
public:
    LogindBrightness(MessageBus& systemBus, const std::filesystem::path& folder)
        : m_bus(systemBus)
        , m_backlight(findBacklight(folder)) {
        if (m_backlight) {
            watch();
        }
    }

    std::optional<double> brightness() const override {
        const auto step = m_backlight ? numberIn(m_backlight->folder / "brightness") : std::nullopt;
        return step ? std::optional(std::min(1.0, static_cast<double>(*step) / m_backlight->maximum))
                    : std::nullopt;
    }

    void setBrightness(double brightness) override {
        if (!m_backlight || std::isnan(brightness)) {
            return;
        }
        m_wish = std::clamp(brightness, 0.0, 1.0);
        if (!m_isSetting) {
            grantWish();
        }
    }

    void setOnChange(std::function<void()> onChange) override { m_onChange = std::move(onChange); }

private:
    /// The kernel reports both: what a program writes, and what the firmware does by itself.
    void watch() {
        m_watcher.emplace();
        for (const char* name : {"brightness", "actual_brightness"}) {
            m_watcher->addPath(QString::fromStdString((m_backlight->folder / name).string()));
        }
        QObject::connect(&*m_watcher, &QFileSystemWatcher::fileChanged, &m_context, [this] { tellChange(); });
    }

    /// While something is being set, what the backlight has reached on the way there is not told.
    void tellChange() {
        if (!m_isSetting && m_onChange) {
            m_onChange();
        }
    }

    /// One at a time: of what is wished for while logind works on one, only the last counts.
    void grantWish() {
        m_isSetting = true;
        m_bus.whenThere(&m_context, [this](const QDBusConnection& bus) {
            auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(request()), &m_context);
            QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context, [this, watcher] {
                watcher->deleteLater();
                wishGranted();
            });
        });
    }

    /// Or refused, which the backlight tells.
    void wishGranted() {
        if (m_wish) {
            grantWish();
            return;
        }
        m_isSetting = false;
        tellChange();
    }

    QDBusMessage request() {
        QDBusMessage call = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1/session/auto"),
            QStringLiteral("org.freedesktop.login1.Session"), QStringLiteral("SetBrightness"));
        const double wish = *std::exchange(m_wish, std::nullopt);
        const auto step = static_cast<std::uint32_t>(std::lround(wish * m_backlight->maximum));
        call << QStringLiteral("backlight") << QString::fromStdString(m_backlight->folder.filename().string())
             << std::max(step, 1U);
        return call;
    }

    MessageBus& m_bus;
    std::optional<Backlight> m_backlight;
    std::optional<double> m_wish;
    bool m_isSetting = false;
    std::function<void()> m_onChange;
    /// There only where there is something to watch.
    std::optional<QFileSystemWatcher> m_watcher;
    QObject m_context;
};

} // namespace

std::unique_ptr<ScreenBrightness> makeLogindBrightness(MessageBus& systemBus,
                                                       const std::filesystem::path& folder) {
    return std::make_unique<LogindBrightness>(systemBus, folder);
}

} // namespace ondavia
