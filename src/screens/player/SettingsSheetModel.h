#pragma once

#include "base/Observable.h"
#include "playback/OndaviaMediaTrack.h"
#include "screens/player/SettingsSectionModel.h"

#include <QObject>
#include <QVariantList>
#include <qqmlregistration.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace ondavia {

class PlaybackChoices;
class PlayerManager;

/// What the settings sheet of a player lists and what its choices do. Made anew each time the sheet opens.
/// Main thread.
class SettingsSheetModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the player")
    /// `SettingsSectionModel`s, from top to bottom.
    Q_PROPERTY(QVariantList sections READ sectionList CONSTANT)
    /// What a section says that has nothing to choose from.
    Q_PROPERTY(QString notAvailable READ notAvailable CONSTANT)

    /// Key of the one open section.
    ONDAVIA_OBSERVABLE(std::optional<QString>, expandedSection, setExpandedSection);
    /// Grows each time that the tracks have been read again.
    ONDAVIA_OBSERVABLE(std::int64_t, trackRefreshTrigger, setTrackRefreshTrigger, 0);

public:
    enum class Kind { Film, Live };

    /// Speed and skip interval are a film's alone. Both must outlive the object.
    SettingsSheetModel(Kind kind, PlayerManager& manager, PlaybackChoices& choices);
    ~SettingsSheetModel() override;

    [[nodiscard]] std::vector<SettingsSectionModel*> sections() const;
    [[nodiscard]] QVariantList sectionList() const;
    [[nodiscard]] const std::vector<OndaviaMediaTrack>& audioTracks() const { return m_audioTracks; }
    [[nodiscard]] const std::vector<OndaviaMediaTrack>& subtitleTracks() const { return m_subtitleTracks; }
    [[nodiscard]] QString currentAudioName() const;
    [[nodiscard]] QString currentSubtitleName() const;
    [[nodiscard]] static QString notAvailable();

    void refreshTracks();
    Q_INVOKABLE void toggleSection(const QString& key);
    /// Takes the option at `index` of a section, and closes the section.
    Q_INVOKABLE void choose(const QString& key, int index);

private:
    struct Section;

    void addSections(Kind kind);
    void updateSections();
    void updateExpanded();

    [[nodiscard]] QString aspectName() const;
    [[nodiscard]] QString speedName() const;
    [[nodiscard]] QString skipName() const;
    [[nodiscard]] QVariantList audioOptions() const;
    [[nodiscard]] QVariantList subtitleOptions() const;
    [[nodiscard]] QVariantList aspectOptions() const;
    [[nodiscard]] QVariantList speedOptions() const;
    [[nodiscard]] QVariantList skipOptions() const;
    void chooseAudio(std::size_t index);
    void chooseSubtitle(std::size_t index);
    void chooseAspect(std::size_t index);
    void chooseSpeed(std::size_t index);
    void chooseSkip(std::size_t index);

    PlayerManager& m_manager;
    PlaybackChoices& m_choices;
    std::vector<OndaviaMediaTrack> m_audioTracks;
    std::vector<OndaviaMediaTrack> m_subtitleTracks;
    std::vector<Section> m_sections;
};

} // namespace ondavia
