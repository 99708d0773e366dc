import QtQuick
import Ondavia.Style

/// The series tab.
EmptyStateView {
    icon: "play.rectangle.on.rectangle.fill"
    title: Texts.get("series.title", "Series")
    message: Texts.get("series.notYet", "As séries ainda não podem ser vistas nesta versão.")
}
