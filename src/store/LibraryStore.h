#pragma once

#include "store/EntityTraits.h"
#include "store/OpenReport.h"
#include "store/Query.h"
#include "store/Replacement.h"
#include "store/StoreContext.h"
#include "store/StoreError.h"

#include <QObject>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace ondavia {

class StoreFolder;

struct StoreOptions final {
    /// The largest file of downloaded rows, in bytes: a provider that sends without end must not fill the
    /// device. A replacement that would grow past it fails like one on a full device.
    std::int64_t maximumDownloadBytes = std::int64_t{8} << 30;
};

/// The on-disk store of the five entities: `user.db`, `catalogue.db` and `guide.db` in one folder that
/// only its owner can read. Several processes may have it open.
///
/// A main-thread object. `beginReplacement` and `makeContext` may be called from any thread.
class LibraryStore final : public QObject {
    Q_OBJECT

public:
    /// Opens the store in `folder`, which is made if missing. A damaged file of downloaded rows is made
    /// anew, a damaged or missing user's file is made anew from what is left; both are logged as errors and
    /// told in `openReport`. Raises StoreError or std::system_error if a file comes from a later version or
    /// cannot be opened.
    [[nodiscard]] static std::unique_ptr<LibraryStore> open(const std::filesystem::path& folder,
                                                            const StoreOptions& options = {});
    ~LibraryStore() override;

    [[nodiscard]] const OpenReport& openReport() const { return m_report; }

    /// The main thread's context, which all screens and services share.
    [[nodiscard]] StoreContext& mainContext() { return m_mainContext; }

    /// A context for background work.
    [[nodiscard]] std::unique_ptr<StoreContext> makeContext();

    /// Starts to replace all rows of a kind. Raises StoreError.
    template<DownloadedEntity T>
    [[nodiscard]] Replacement<T> beginReplacement(std::optional<std::string> owner = {}) {
        return Replacement<T>(*this, std::move(owner));
    }

    /// The owner whose no rows are.
    static constexpr const char* nobody = "nobody";
    /// From now on only rows of `owner` can be put into the store for somebody, by whatever process. The
    /// rows that are there stay. Main thread. Raises StoreError.
    void setOwner(const std::string& owner);
    /// The same unless another process has changed the owner since this one opened the store or changed
    /// him itself. Main thread. Raises StoreError.
    void claim(const std::string& owner);
    /// Whoever was named last, by whatever process; absent in a store in which that has not happened. Any
    /// thread. Raises StoreError.
    [[nodiscard]] std::optional<std::string> owner() const;
    /// Raises StoreError of the kind NotOwner when the store is somebody else's. Any thread.
    void requireOwner(const std::string& owner) const;
    /// Raises StoreError of the kind NotOwner when the store is nobody's. Any thread.
    void requireSomebody() const;

    /// The files, for contexts and replacements. Any thread.
    [[nodiscard]] StoreFolder& folder() { return *m_folder; }
    [[nodiscard]] const StoreOptions& options() const { return m_options; }

    /// Backs the user's file up on a thread of its own, unless that was done or tried today. Any thread.
    void backUp();
    /// The user emptied a whole kind: backs up what is left on a thread of its own, and then deletes the
    /// copies that would bring its rows back. Any thread.
    void renewBackups();

    /// Has `changed` emitted for each of `kinds`: at once on the main thread, soon from any other.
    void announce(const std::vector<EntityKind>& kinds);

    /// Emitted on the main thread after a save or a replacement of this process, from whatever thread,
    /// touched rows of `kind`.
    Q_SIGNAL void changed(ondavia::EntityKind kind);

private:
    LibraryStore(std::unique_ptr<StoreFolder> folder, const StoreOptions& options, OpenReport report);
    void announceNow(const std::vector<EntityKind>& kinds);
    void startBackup(std::function<void()> run);

    std::unique_ptr<StoreFolder> m_folder;
    StoreOptions m_options;
    OpenReport m_report;
    /// As this process last saw him.
    std::optional<std::string> m_owner;
    StoreContext m_mainContext;
    std::mutex m_backupMutex;
    std::filesystem::path m_lastBackup;
    /// Ends before the store does.
    std::jthread m_backup;
};

} // namespace ondavia
