import QtQuick
import Ondavia.Browse
import Ondavia.Style

/// The series.
TitlesView {
    kind: "series"
    symbol: "play.rectangle.fill"
    title: Texts.get("series.title", "Series")
    emptyTitle: Texts.get("series.empty", "Sem séries")
    emptyMessage: Texts.get("series.emptyMessage", "As séries aparecem aqui assim que o catálogo do provedor for carregado.")
}
