#pragma once

#include "entities/WatchHistory.h"
#include "screens/details/DetailViewModel.h"

#include <qcoro/qcorotask.h>
#include <qqmlregistration.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ondavia {

/// The page of a film. Whether the film was begun decides what the main button says, not where it plays
/// from: that is the player's. Main thread.
// With its namespace, by which QML knows the base.
class MovieDetailViewModel final : public ondavia::DetailViewModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")

    /// What was seen of it, where it is worth going on from.
    ONDAVIA_OBSERVABLE(std::optional<WatchHistory>, watchHistory, setWatchHistory);
    /// The external files that the provider has. Empty until it has answered.
    ONDAVIA_OBSERVABLE(std::vector<std::string>, subtitleURLs, setSubtitleURLs);

public:
    MovieDetailViewModel(const DetailServices& services, Channel movie);

    void appear() override;
    void play() override;

    [[nodiscard]] const Channel& movie() const { return channel(); }
    [[nodiscard]] std::vector<DetailBadge> badges() const override;
    [[nodiscard]] bool continues() const override { return watchHistory().has_value(); }
    [[nodiscard]] bool canPlay() const override { return true; }

private:
    QCoro::Task<void> fetchSubtitleURLs();

    /// Of the latest visit; what an earlier one asked for is dropped.
    std::uint64_t m_generation = 0;
};

} // namespace ondavia
