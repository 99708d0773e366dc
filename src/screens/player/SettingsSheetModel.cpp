#include "screens/player/SettingsSheetModel.h"

#include "playback/PlayerManager.h"
#include "screens/player/PlaybackChoices.h"
#include "style/ShownText.h"
#include "style/Texts.h"

#include <algorithm>
#include <array>

namespace ondavia {

namespace {

constexpr std::array aspectRatios{"Original", "16:9", "4:3", "Preencher"};
constexpr std::array speeds{0.5F, 0.75F, 1.0F, 1.25F, 1.5F, 2.0F};
constexpr std::array<std::int64_t, 5> skipIntervals{5, 10, 15, 30, 60};

QVariantMap settingsOption(const QString& title, bool isSelected) {
    return {{QStringLiteral("title"), title}, {QStringLiteral("isSelected"), isSelected}};
}

/// The manager knows the two that are words by their Portuguese names.
QString aspectTitle(const std::string& label) {
    if (label == "Preencher") {
        return textFor("Preencher", "Preencher");
    }
    return label == "Original" ? textFor("Original", "Original") : QString::fromStdString(label);
}

QString skipTitle(std::int64_t seconds) {
    return QString::number(seconds) + QLatin1Char('s');
}

QVariantList trackOptions(const std::vector<OndaviaMediaTrack>& tracks) {
    QVariantList options;
    for (const OndaviaMediaTrack& track : tracks) {
        options.append(settingsOption(shownText(track.name), track.isEnabled));
    }
    return options;
}

const OndaviaMediaTrack* enabledTrack(const std::vector<OndaviaMediaTrack>& tracks) {
    const auto found = std::ranges::find_if(tracks, &OndaviaMediaTrack::isEnabled);
    return found != tracks.end() ? &*found : nullptr;
}

QString subtitlesOff() {
    return textFor("settings.disabled", "Desativado");
}

} // namespace

struct SettingsSheetModel::Section final {
    std::unique_ptr<SettingsSectionModel> model;
    QString (SettingsSheetModel::*value)() const;
    QVariantList (SettingsSheetModel::*options)() const;
    void (SettingsSheetModel::*choose)(std::size_t index);
};

SettingsSheetModel::SettingsSheetModel(Kind kind, PlayerManager& manager, PlaybackChoices& choices)
    : m_manager(manager)
    , m_choices(choices) {
    addSections(kind);
    connect(&m_manager, &PlayerManager::tracksNonceChanged, this, &SettingsSheetModel::refreshTracks);
    connect(this, &SettingsSheetModel::trackRefreshTriggerChanged, this, &SettingsSheetModel::updateSections);
    connect(&m_manager, &PlayerManager::selectedAspectRatioChanged, this,
            &SettingsSheetModel::updateSections);
    connect(&m_choices, &PlaybackChoices::playbackSpeedChanged, this, &SettingsSheetModel::updateSections);
    connect(&m_choices, &PlaybackChoices::skipIntervalChanged, this, &SettingsSheetModel::updateSections);
    connect(this, &SettingsSheetModel::expandedSectionChanged, this, &SettingsSheetModel::updateExpanded);
    refreshTracks();
}

SettingsSheetModel::~SettingsSheetModel() = default;

void SettingsSheetModel::addSections(Kind kind) {
    using Self = SettingsSheetModel;
    const auto add = [this](const char* key, const QString& title, auto value, auto options, auto take) {
        m_sections.push_back(
            {std::make_unique<SettingsSectionModel>(QLatin1String(key), title), value, options, take});
    };
    add("audio", textFor("settings.audioTrack", "Pista de Audio"), &Self::currentAudioName,
        &Self::audioOptions, &Self::chooseAudio);
    add("subtitles", textFor("settings.subtitles", "Legendas"), &Self::currentSubtitleName,
        &Self::subtitleOptions, &Self::chooseSubtitle);
    add("aspect", textFor("settings.aspectRatio", "Proporcao"), &Self::aspectName, &Self::aspectOptions,
        &Self::chooseAspect);
    if (kind == Kind::Film) {
        add("speed", textFor("settings.speed", "Velocidade"), &Self::speedName, &Self::speedOptions,
            &Self::chooseSpeed);
        add("skip", textFor("settings.skipInterval", "Intervalo de salto"), &Self::skipName,
            &Self::skipOptions, &Self::chooseSkip);
    }
}

std::vector<SettingsSectionModel*> SettingsSheetModel::sections() const {
    std::vector<SettingsSectionModel*> models;
    for (const Section& section : m_sections) {
        models.push_back(section.model.get());
    }
    return models;
}

QVariantList SettingsSheetModel::sectionList() const {
    QVariantList list;
    for (SettingsSectionModel* section : sections()) {
        list.append(QVariant::fromValue(section));
    }
    return list;
}

QString SettingsSheetModel::notAvailable() {
    return textFor("settings.notAvailable", "Nao disponivel");
}

QString SettingsSheetModel::currentAudioName() const {
    const OndaviaMediaTrack* track = enabledTrack(m_audioTracks);
    return track != nullptr ? shownText(track->name) : notAvailable();
}

QString SettingsSheetModel::currentSubtitleName() const {
    const OndaviaMediaTrack* track = enabledTrack(m_subtitleTracks);
    return track != nullptr ? shownText(track->name) : subtitlesOff();
}

QString SettingsSheetModel::aspectName() const {
    return aspectTitle(m_manager.selectedAspectRatio());
}

QString SettingsSheetModel::speedName() const {
    return speedLabel(m_choices.playbackSpeed());
}

QString SettingsSheetModel::skipName() const {
    return skipTitle(m_choices.skipInterval());
}

QVariantList SettingsSheetModel::audioOptions() const {
    return trackOptions(m_audioTracks);
}

QVariantList SettingsSheetModel::subtitleOptions() const {
    QVariantList options = trackOptions(m_subtitleTracks);
    if (!options.isEmpty()) {
        options.prepend(settingsOption(subtitlesOff(), enabledTrack(m_subtitleTracks) == nullptr));
    }
    return options;
}

QVariantList SettingsSheetModel::aspectOptions() const {
    QVariantList options;
    for (const char* label : aspectRatios) {
        options.append(settingsOption(aspectTitle(label), m_manager.selectedAspectRatio() == label));
    }
    return options;
}

QVariantList SettingsSheetModel::speedOptions() const {
    QVariantList options;
    for (const float speed : speeds) {
        options.append(settingsOption(speedLabel(speed), m_choices.playbackSpeed() == speed));
    }
    return options;
}

QVariantList SettingsSheetModel::skipOptions() const {
    QVariantList options;
    for (const std::int64_t interval : skipIntervals) {
        options.append(settingsOption(skipTitle(interval), m_choices.skipInterval() == interval));
    }
    return options;
}

void SettingsSheetModel::refreshTracks() {
    m_audioTracks = m_manager.availableAudioTracks();
    m_subtitleTracks = m_manager.availableSubtitleTracks();
    setTrackRefreshTrigger(trackRefreshTrigger() + 1);
}

void SettingsSheetModel::toggleSection(const QString& key) {
    setExpandedSection(expandedSection() == key ? std::nullopt : std::optional(key));
}

void SettingsSheetModel::choose(const QString& key, int index) {
    const auto section = std::ranges::find_if(
        m_sections, [&key](const Section& candidate) { return candidate.model->key() == key; });
    if (section == m_sections.end() || index < 0 || index >= section->model->options().size()) {
        return;
    }
    (this->*section->choose)(static_cast<std::size_t>(index));
    setExpandedSection(std::nullopt);
}

void SettingsSheetModel::chooseAudio(std::size_t index) {
    const OndaviaMediaTrack& track = m_audioTracks.at(index);
    if (track.kind == OndaviaMediaTrack::Kind::audio && track.audioStreamIndex && m_manager.player()) {
        m_manager.player()->exchangeSelectedStream(static_cast<std::int32_t>(*track.audioStreamIndex));
    }
    refreshTracks();
}

void SettingsSheetModel::chooseSubtitle(std::size_t index) {
    m_manager.selectSubtitleTrack(index == 0 ? std::nullopt : std::optional(m_subtitleTracks.at(index - 1)));
    refreshTracks();
}

void SettingsSheetModel::chooseAspect(std::size_t index) {
    m_manager.setAspectRatio(aspectRatios.at(index));
}

void SettingsSheetModel::chooseSpeed(std::size_t index) {
    m_choices.setPlaybackSpeed(speeds.at(index));
    if (m_manager.player()) {
        m_manager.player()->setPlaybackRate(speeds.at(index));
    }
    m_manager.updateNowPlayingInfo();
}

void SettingsSheetModel::chooseSkip(std::size_t index) {
    m_choices.setSkipInterval(skipIntervals.at(index));
}

void SettingsSheetModel::updateSections() {
    for (const Section& section : m_sections) {
        section.model->setContent((this->*section.value)(), (this->*section.options)());
    }
}

void SettingsSheetModel::updateExpanded() {
    for (const Section& section : m_sections) {
        section.model->setExpanded(expandedSection() == section.model->key());
    }
}

} // namespace ondavia
