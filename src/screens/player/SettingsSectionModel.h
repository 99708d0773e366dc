#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>
#include <qqmlregistration.h>

namespace ondavia {

/// One section of the settings sheet as it is drawn. Main thread.
class SettingsSectionModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the sheet")
    Q_PROPERTY(QString key READ key CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString value READ value NOTIFY valueChanged)
    Q_PROPERTY(bool isExpanded READ isExpanded NOTIFY isExpandedChanged)
    /// Of each option its `title` and whether it `isSelected`; empty where there is nothing to choose.
    Q_PROPERTY(QVariantList options READ options NOTIFY optionsChanged)

public:
    SettingsSectionModel(QString key, QString title)
        : m_key(std::move(key))
        , m_title(std::move(title)) {}

    [[nodiscard]] const QString& key() const { return m_key; }
    [[nodiscard]] const QString& title() const { return m_title; }
    [[nodiscard]] const QString& value() const { return m_value; }
    [[nodiscard]] bool isExpanded() const { return m_isExpanded; }
    [[nodiscard]] const QVariantList& options() const { return m_options; }

    void setContent(const QString& value, const QVariantList& options) {
        if (m_value != value) {
            m_value = value;
            Q_EMIT valueChanged();
        }
        if (m_options != options) {
            m_options = options;
            Q_EMIT optionsChanged();
        }
    }
    void setExpanded(bool expanded) {
        if (m_isExpanded != expanded) {
            m_isExpanded = expanded;
            Q_EMIT isExpandedChanged();
        }
    }

    Q_SIGNAL void valueChanged();
    Q_SIGNAL void isExpandedChanged();
    Q_SIGNAL void optionsChanged();

private:
    QString m_key;
    QString m_title;
    QString m_value;
    QVariantList m_options;
    bool m_isExpanded = false;
};

} // namespace ondavia
