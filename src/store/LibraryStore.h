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
#include <memory>
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
    /// anew, a damaged user's file is kept aside; both are logged as errors and told in `openReport`.
    /// Raises StoreError if a file comes from a later version or cannot be opened.
    [[nodiscard]] static std::unique_ptr<LibraryStore> open(const std::filesystem::path& folder,
                                                            const StoreOptions& options = {});
    ~LibraryStore() override;

    [[nodiscard]] const OpenReport& openReport() const { return m_report; }

    /// The main thread's context, which all screens and services share.
    [[nodiscard]] StoreContext& mainContext() { return m_mainContext; }

    /// A context for background work.
    [[nodiscard]] std::unique_ptr<StoreContext> makeContext();

    /// Starts to replace all rows of a kind. Raises StoreError.
    template<DownloadedEntity T> [[nodiscard]] Replacement<T> beginReplacement() {
        return Replacement<T>(*this);
    }

    /// The files, for contexts and replacements. Any thread.
    [[nodiscard]] StoreFolder& folder() { return *m_folder; }
    [[nodiscard]] const StoreOptions& options() const { return m_options; }

    /// Has `changed` emitted for each of `kinds`: at once on the main thread, soon from any other.
    void announce(const std::vector<EntityKind>& kinds);

    /// Emitted on the main thread after a save or a replacement of this process, from whatever thread,
    /// touched rows of `kind`.
    Q_SIGNAL void changed(ondavia::EntityKind kind);

private:
    LibraryStore(std::unique_ptr<StoreFolder> folder, const StoreOptions& options, OpenReport report);
    void announceNow(const std::vector<EntityKind>& kinds);

    std::unique_ptr<StoreFolder> m_folder;
    StoreOptions m_options;
    OpenReport m_report;
    StoreContext m_mainContext;
};

} // namespace ondavia
