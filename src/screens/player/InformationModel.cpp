#include "screens/player/InformationModel.h"

#include "base/Redaction.h"
#include "base/VisibleText.h"
#include "playback/PlayerManager.h"
#include "style/Texts.h"

#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace ondavia {
namespace {

QString foreignText(const std::string& text) {
    return QString::fromStdString(visibleText(maskSecrets(text)));
}

QString sizeText(const FSStatistics& statistics) {
    return statistics.width > 0 && statistics.height > 0
               ? QStringLiteral("%1 × %2").arg(statistics.width).arg(statistics.height)
               : QString();
}

QString rateText(double picturesPerSecond) {
    constexpr int digits = 4;
    return picturesPerSecond > 0 ? textFor("information.frameRate", "%1 imagens/s")
                                       .arg(QLocale().toString(picturesPerSecond, 'g', digits))
                                 : QString();
}

QString bitrateText(std::int64_t bitsPerSecond) {
    constexpr double mega = 1e6;
    constexpr double kilo = 1e3;
    const auto bits = static_cast<double>(bitsPerSecond);
    if (bits >= mega) {
        return QLocale().toString(bits / mega, 'f', 1) + QStringLiteral(" Mbit/s");
    }
    return bits > 0 ? QLocale().toString(bits / kilo, 'f', 0) + QStringLiteral(" kbit/s") : QString();
}

QString decoderText(const std::string& decoder) {
    return decoder == "software" ? textFor("information.software", "processador")
                                 : QString::fromStdString(decoder);
}

QString pictureText(const FSStatistics& statistics) {
    QStringList parts{QString::fromStdString(statistics.videoCodec), sizeText(statistics),
                      rateText(statistics.frameRate)};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(" · "));
}

QString labelOf(int row) {
    const std::array labels = {
        textFor("information.picture", "Imagem"),           textFor("information.sound", "Som"),
        textFor("information.bitrate", "Débito"),           textFor("information.decoder", "Descodificador"),
        textFor("information.dropped", "Imagens perdidas"), textFor("information.buffered", "Em memória"),
        textFor("information.server", "Servidor"),          textFor("information.answer", "Última resposta"),
    };
    return labels.at(static_cast<std::size_t>(row));
}

} // namespace

InformationModel::InformationModel(PlayerManager& manager, Scheduler& scheduler, QObject* parent)
    : QAbstractListModel(parent)
    , m_manager(manager)
    , m_scheduler(scheduler) {}

void InformationModel::setIsShown(bool isShown) {
    if (isShown == this->isShown()) {
        return;
    }
    m_timer = isShown ? m_scheduler.repeating(secondsBetweenLooks, [this] { look(); }) : nullptr;
    if (isShown) {
        look();
    }
    Q_EMIT isShownChanged();
}

int InformationModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_values.size());
}

QVariant InformationModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    if (role == LabelRole) {
        return labelOf(index.row());
    }
    return role == ValueRole ? m_values.at(static_cast<std::size_t>(index.row())) : QVariant();
}

QHash<int, QByteArray> InformationModel::roleNames() const {
    return {{LabelRole, "label"}, {ValueRole, "value"}};
}

void InformationModel::look() {
    const auto player = m_manager.player();
    const FSStatistics statistics = player ? player->statistics() : FSStatistics();
    rememberAnswer(statistics.serverAnswer);
    show(statistics);
}

void InformationModel::rememberAnswer(const std::string& answer) {
    const auto& item = m_manager.currentItem();
    const bool isOther = item && item->id != m_itemId;
    if (isOther) {
        m_itemId = item->id;
    }
    if (isOther || !answer.empty()) {
        m_answer = answer;
    }
}

void InformationModel::show(const FSStatistics& statistics) {
    m_values = {
        pictureText(statistics),
        QString::fromStdString(statistics.audioCodec),
        bitrateText(statistics.bitrate),
        decoderText(statistics.decoder),
        QLocale().toString(static_cast<qlonglong>(statistics.droppedFrames)),
        QLocale().toString(statistics.secondsBuffered, 'f', 1) + QStringLiteral(" s"),
        foreignText(m_manager.lastOpenedURL()),
        foreignText(m_answer),
    };
    std::ranges::replace(m_values, QString(), QStringLiteral("–"));
    Q_EMIT dataChanged(index(0), index(rowCount() - 1), {ValueRole});
}

} // namespace ondavia
