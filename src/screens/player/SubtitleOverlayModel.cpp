#include "screens/player/SubtitleOverlayModel.h"

#include "playback/PlayerManager.h"

namespace ondavia {

SubtitleOverlayModel::SubtitleOverlayModel(const PlayerManager& manager, Scheduler& scheduler)
    : m_manager(manager)
    , m_scheduler(scheduler) {
    connect(&m_manager, &PlayerManager::useCustomSubtitleOverlayChanged, this,
            &SubtitleOverlayModel::modeChanged);
    modeChanged();
}

bool SubtitleOverlayModel::isShown() const {
    return m_manager.useCustomSubtitleOverlay();
}

void SubtitleOverlayModel::modeChanged() {
    m_timeline.reset();
    if (isShown()) {
        tick();
        m_timeline = m_scheduler.repeating(tickSeconds, [this] { tick(); });
    }
    Q_EMIT isShownChanged();
}

void SubtitleOverlayModel::tick() {
    const auto& track = m_manager.currentSubtitleTrack();
    const SubtitleCue* cue = track ? track->activeCue(m_manager.currentTime()) : nullptr;
    const QString text = cue != nullptr ? QString::fromStdString(cue->text) : QString();
    if (m_activeText != text) {
        m_activeText = text;
        Q_EMIT activeTextChanged();
    }
}

} // namespace ondavia
