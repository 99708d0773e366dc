#include "style/FocusGuide.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>

#include <cmath>
#include <limits>
#include <vector>

namespace ondavia {

namespace {

/// Controls that Tab reaches, as far as they can be seen.
void collectFocusable(QQuickItem& item, std::vector<QQuickItem*>& found) {
    if (!item.isVisible() || !item.isEnabled()) {
        return;
    }
    if (item.activeFocusOnTab()) {
        found.push_back(&item);
    }
    for (QQuickItem* child : item.childItems()) {
        collectFocusable(*child, found);
    }
}

QRectF sceneRect(const QQuickItem& item) {
    return item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
}

/// How far `target` lies from `origin` in the direction of `key`; infinite when it does not. A step
/// aside costs more than a step ahead, so that rows and columns are followed.
double distance(const QRectF& origin, const QRectF& target, int key) {
    constexpr double sideways = 3;
    constexpr double unreachable = std::numeric_limits<double>::infinity();
    const bool isHorizontal = key == Qt::Key_Left || key == Qt::Key_Right;
    const double sign = key == Qt::Key_Right || key == Qt::Key_Down ? 1 : -1;
    const QPointF from = origin.center();
    const QPointF to = target.center();
    // A large target, such as a list, counts by its nearest edge.
    const double edge = isHorizontal
                            ? (sign > 0 ? target.left() - origin.right() : origin.left() - target.right())
                            : (sign > 0 ? target.top() - origin.bottom() : origin.top() - target.bottom());
    const double ahead = sign * (isHorizontal ? to.x() - from.x() : to.y() - from.y());
    if (ahead <= 0 || edge < -1) {
        return unreachable;
    }
    const double gap = isHorizontal
                           ? std::max(target.top() - origin.bottom(), origin.top() - target.bottom())
                           : std::max(target.left() - origin.right(), origin.left() - target.right());
    const double centres = isHorizontal ? std::abs(to.y() - from.y()) : std::abs(to.x() - from.x());
    return std::max(edge, 0.0) + sideways * std::max(gap, 0.0) + centres * 0.1;
}

bool isArrowKey(int key) {
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

/// Whether a control has the focus whose frame a key makes visible. A text field shows a cursor instead,
/// and what is scrolled out of sight shows nothing.
bool holdsHiddenFocus(const QQuickWindow& window) {
    const QQuickItem* item = window.activeFocusItem();
    return item != nullptr && !item->isFocusScope() && !item->inherits("QQuickTextInput") &&
           QRectF(QPointF(), window.size()).intersects(sceneRect(*item));
}

} // namespace

FocusGuide::FocusGuide(QObject* parent)
    : QObject(parent) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool FocusGuide::move(QQuickItem* root, int key) {
    if (root == nullptr || root->window() == nullptr || !isArrowKey(key)) {
        return false;
    }
    std::vector<QQuickItem*> candidates;
    collectFocusable(*root, candidates);
    const QQuickItem* current = root->window()->activeFocusItem();
    // Where no control has the focus, the first one gets it: a remote control has no other way in.
    const bool hasOrigin = current != nullptr && !current->isFocusScope();
    const QRectF origin = hasOrigin ? sceneRect(*current) : QRectF();
    QQuickItem* best = nullptr;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (QQuickItem* candidate : candidates) {
        const double away = hasOrigin ? distance(origin, sceneRect(*candidate), key) : 0;
        if (!candidate->hasActiveFocus() && away < bestDistance) {
            best = candidate;
            bestDistance = away;
        }
    }
    if (best == nullptr) {
        return false;
    }
    best->forceActiveFocus(Qt::TabFocusReason);
    return true;
}

bool FocusGuide::isBack(int key) const {
    return key == Qt::Key_Escape || key == Qt::Key_Back || key == Qt::Key_Backspace;
}

bool FocusGuide::isArrow(int key) const {
    return isArrowKey(key);
}

bool FocusGuide::isSearch(int key, int modifiers) const {
    // A slash stands above the 7 on some keyboards, and on the keypad of most.
    const int others = modifiers & ~static_cast<int>(Qt::ShiftModifier | Qt::KeypadModifier);
    return key == Qt::Key_Search || (key == Qt::Key_Slash && others == Qt::NoModifier) ||
           (key == Qt::Key_F && modifiers == Qt::ControlModifier);
}

bool FocusGuide::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
        if (const auto* window = qobject_cast<QQuickWindow*>(watched)) {
            const bool onlyShows = !m_isKeyboardInUse && isArrowKey(static_cast<QKeyEvent*>(event)->key()) &&
                                   holdsHiddenFocus(*window);
            setKeyboardInUse(true);
            Q_EMIT keyPressed();
            if (onlyShows) {
                return true;
            }
        }
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        setKeyboardInUse(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void FocusGuide::setKeyboardInUse(bool inUse) {
    if (m_isKeyboardInUse != inUse) {
        m_isKeyboardInUse = inUse;
        Q_EMIT isKeyboardInUseChanged();
    }
}

} // namespace ondavia
