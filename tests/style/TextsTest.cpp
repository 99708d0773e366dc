#include "style/Texts.h"

#include "style/Environment.h"
#include "style/Icons.h"
#include "style/ShownText.h"
#include "support/TestSupport.h"

#include <QDirIterator>
#include <QFile>
#include <QLocale>
#include <QRawFont>
#include <QRegularExpression>
#include <QSet>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <map>

namespace ondavia {
namespace {

QString read(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

std::vector<QString> sources() {
    std::vector<QString> found;
    QDirIterator files(QStringLiteral(ONDAVIA_SOURCE_FOLDER "/src"),
                       {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.qml")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        found.push_back(read(files.next()));
    }
    return found;
}

/// Every key that the sources quote, with every default that stands beside it.
std::map<std::string, std::set<std::string>> quotedTexts() {
    static const QRegularExpression call(QStringLiteral(
        R"re((?:localizedText|textFor|Texts\.get)\(\s*"([^"]+)"\s*,\s*((?:"(?:[^"\\]|\\.)*"\s*)+))re"));
    static const QRegularExpression literal(QStringLiteral(R"re("((?:[^"\\]|\\.)*)")re"));
    std::map<std::string, std::set<std::string>> texts;
    for (const QString& source : sources()) {
        for (auto calls = call.globalMatch(source); calls.hasNext();) {
            const auto match = calls.next();
            QString text;
            for (auto parts = literal.globalMatch(match.captured(2)); parts.hasNext();) {
                text += parts.next().captured(1);
            }
            texts[match.captured(1).toStdString()].insert(text.toStdString());
        }
    }
    return texts;
}

std::vector<std::string> placeholders(const QString& text) {
    static const QRegularExpression placeholder(QStringLiteral(R"(%[0-9]|%l?l?[ds]|\{[a-z]*\})"));
    std::vector<std::string> found;
    for (auto matches = placeholder.globalMatch(text); matches.hasNext();) {
        found.push_back(matches.next().captured().toStdString());
    }
    std::ranges::sort(found);
    return found;
}

class Catalogue : public ::testing::TestWithParam<const char*> {
protected:
    ~Catalogue() override { installTextCatalogue({}); }
};

TEST_P(Catalogue, HoldsEveryKeyOfTheSourcesAndNoOther) {
    const auto texts = quotedTexts();
    ASSERT_GT(texts.size(), 40U) << "the sources were not found";
    const TextCatalogue catalogue = readTextCatalogue(GetParam());
    for (const auto& [key, defaults] : texts) {
        EXPECT_TRUE(catalogue.contains(key)) << "missing: " << key;
    }
    for (const auto& [key, text] : catalogue) {
        EXPECT_TRUE(texts.contains(key)) << "unused: " << key;
        EXPECT_FALSE(text.empty()) << key;
    }
}

TEST_P(Catalogue, KeepsThePlaceholdersOfTheDefaults) {
    const TextCatalogue catalogue = readTextCatalogue(GetParam());
    for (const auto& [key, defaults] : quotedTexts()) {
        const auto entry = catalogue.find(key);
        ASSERT_NE(entry, catalogue.end()) << key;
        EXPECT_EQ(placeholders(QString::fromStdString(entry->second)),
                  placeholders(QString::fromStdString(*defaults.begin())))
            << key;
    }
}

TEST_P(Catalogue, IsShownOnceInstalled) {
    installLanguage(GetParam());
    EXPECT_EQ(localizedText("tab.home", "Inicio"), readTextCatalogue(GetParam()).at("tab.home"));
    EXPECT_NE(localizedText("tab.home", "?"), "?");
    EXPECT_EQ(localizedText("no.such.key", "Predefinido"), "Predefinido");
}

INSTANTIATE_TEST_SUITE_P(Languages, Catalogue, ::testing::Values("en", "es", "fr"));

struct SettledText final {
    const char* key;
    const char* defaultText;
};

/// The keys that other languages' catalogues may count on, and what shows without one.
constexpr SettledText settledTexts[] = {
    {"error.invalidURL", "URL invalido"},
    {"error.authFailed", "Autenticacao falhou"},
    {"error.accountExpired", "Conta expirada"},
    {"error.noConnection", "Sem ligacao a internet"},
    {"error.emptyResponse", "Servidor devolveu resposta vazia — catalogo anterior preservado"},
    {"category.none", "Sem Categoria"},
    {"content.loading", "A carregar conteudo..."},
    {"content.loadError", "Erro ao carregar conteúdo. Verifica a tua ligação."},
    {"content.expiredAccount", "Conta expirada ou invalida"},
    {"sync.loadingContent", "A carregar conteudo..."},
    {"sync.moviesError", "Nao foi possivel carregar filmes"},
    {"sync.seriesError", "Nao foi possivel carregar series"},
    {"sync.saving", "A guardar dados..."},
    {"sync.offline", "Sem internet — a usar dados em cache"},
    {"sync.error.generic", "Erro ao sincronizar. Verifica a tua ligação e tenta novamente."},
    {"epg.loading", "A carregar programacao..."},
    {"epg.noData", "Sem informacao de programacao"},
    {"player.invalidURL", "URL invalido"},
    {"player.error", "Erro de reproducao"},
    {"player.nextEpisode", "Proximo episodio"},
    {"player.preparing", "A preparar reproducao..."},
    {"player.retry", "Tentar novamente"},
    {"player.play", "Reproduzir"},
    {"player.continue", "Continuar a ver"},
    {"detail.favorite", "Favorito"},
    {"detail.cast", "Elenco"},
    {"detail.director", "Realizador"},
    {"detail.readMore", "Ler mais"},
    {"detail.less", "Menos"},
    {"series.title", "Series"},
    {"series.loadError", "Erro ao carregar detalhes da série."},
    {"series.loadingEpisodes", "A carregar episodios..."},
    {"series.episodeLabel", "Episodio"},
    {"player.channelList", "LISTA"},
    {"player.epg", "EPG"},
    {"search.title", "Pesquisar"},
    {"search.placeholder", "Pesquisar..."},
    {"search.results", "resultados"},
    {"search.noResults", "Sem resultados"},
    {"search.hint", "Escreve para encontrar canais, filmes ou series"},
    {"search.searchIn", "Pesquisar"},
    {"search.live", "canais"},
    {"search.movies", "filmes"},
    {"search.series", "series"},
    {"general.close", "Fechar"},
    {"settings.audioTrack", "Pista de Audio"},
    {"settings.subtitles", "Legendas"},
    {"settings.aspectRatio", "Proporcao"},
    {"settings.speed", "Velocidade"},
    {"settings.skipInterval", "Intervalo de salto"},
    {"settings.notAvailable", "Nao disponivel"},
    {"settings.disabled", "Desativado"},
    {"tab.home", "Inicio"},
    {"tab.tv", "TV"},
    {"tab.movies", "Filmes"},
    {"tab.series", "Series"},
    {"tab.favorites", "Favoritos"},
};

TEST(SettledTexts, StandInTheSourcesAndInEveryCatalogueByName) {
    const auto quoted = quotedTexts();
    for (const auto& [key, defaultText] : settledTexts) {
        const auto found = quoted.find(key);
        ASSERT_NE(found, quoted.end()) << key;
        EXPECT_EQ(found->second, std::set<std::string>{defaultText}) << key;
        installTextCatalogue({});
        EXPECT_EQ(localizedText(key, defaultText), defaultText);
        for (const char* language : {"en", "es", "fr"}) {
            installLanguage(language);
            EXPECT_EQ(textFor(key, "?").toStdString(), readTextCatalogue(language).at(key)) << language;
        }
    }
    installTextCatalogue({});
}

TEST(QuotedTexts, GiveOneKeyOneDefault) {
    for (const auto& [key, defaults] : quotedTexts()) {
        EXPECT_EQ(defaults.size(), 1U) << key;
    }
}

TEST(InstalledLanguage, PortugueseAndUnknownOnesShowTheDefaults) {
    installLanguage("en");
    ASSERT_EQ(textFor("tab.home", "Inicio"), QStringLiteral("Home"));
    installLanguage("pt");
    EXPECT_EQ(textFor("tab.home", "Inicio"), QStringLiteral("Inicio"));
    installLanguage("en");
    installLanguage("xx");
    EXPECT_EQ(textFor("tab.home", "Inicio"), QStringLiteral("Inicio"));
    EXPECT_EQ(Texts().get(QStringLiteral("tab.home"), QStringLiteral("Inicio")), QStringLiteral("Inicio"));
}

TEST(InstalledLanguage, DecidesHowNumbersAreWritten) {
    installLanguage("en");
    EXPECT_EQ(QLocale().toString(13000), QStringLiteral("13,000"));
    installLanguage("es");
    EXPECT_EQ(QLocale().toString(13000), QStringLiteral("13.000"));
    installLanguage("pt");
    EXPECT_EQ(QLocale().toString(13000), QLocale(QLocale::Portuguese, QLocale::Portugal).toString(13000));
    QLocale::setDefault(QLocale::c());
}

TEST(ChosenLanguage, IsTheFirstPreferredOneThatIsThere) {
    const std::vector<std::string> available{"pt", "en", "fr"};
    EXPECT_EQ(chooseLanguage({"de-DE", "fr-CA", "en"}, available), "fr");
    EXPECT_EQ(chooseLanguage({"EN_gb.UTF-8"}, available), "en");
    EXPECT_EQ(chooseLanguage({"pt-BR", "en"}, available), "pt");
    EXPECT_EQ(chooseLanguage({"eng"}, available), "");
    EXPECT_EQ(chooseLanguage({"", "C"}, available), "");
    EXPECT_EQ(chooseLanguage({}, available), "");
}

TEST(Surroundings, MayGoBeforeTheSessionBusIsThere) {
    for (int round = 0; round < 20; ++round) {
        const Environment environment;
    }
    QThreadPool::globalInstance()->waitForDone();
    testing::drainEvents();
}

TEST(IconTable, EverySymbolHasAGlyphInTheFont) {
    const Environment environment;
    const QRawFont font = QRawFont::fromFont(QFont(environment.iconFamily()));
    ASSERT_EQ(font.familyName(), QStringLiteral("Material Icons"));
    for (const IconEntry& icon : iconTable()) {
        EXPECT_TRUE(font.supportsCharacter(QChar(icon.codePoint))) << icon.symbol;
    }
}

TEST(IconTable, HoldsEverySymbolThatTheScreensName) {
    static const QRegularExpression use(
        QStringLiteral(R"re((?:symbol|icon|symbols)\s*:\s*([^\n]*(?:\n[^\n:]*\])?))re"));
    static const QRegularExpression literal(QStringLiteral(R"re("([a-z0-9.]+)")re"));
    int checked = 0;
    QDirIterator files(QStringLiteral(ONDAVIA_SOURCE_FOLDER "/src"), {QStringLiteral("*.qml")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString source = read(files.next());
        for (auto uses = use.globalMatch(source); uses.hasNext();) {
            // "symbol: a, text: ..." on one line: only the symbol's part.
            const QString value = uses.next()
                                      .captured(1)
                                      .section(QStringLiteral(", page:"), 0, 0)
                                      .section(QStringLiteral(", tab:"), 0, 0);
            for (auto names = literal.globalMatch(value); names.hasNext(); ++checked) {
                const QString name = names.next().captured(1);
                EXPECT_FALSE(Icons().glyph(name).isEmpty()) << name.toStdString();
            }
        }
    }
    EXPECT_GT(checked, 20);
}

TEST(ShownText, IsBoundedAndSteersNothing) {
    EXPECT_EQ(shownText("Uma Longa Noite — Ação"), QStringLiteral("Uma Longa Noite — Ação"));
    EXPECT_EQ(shownText("um\ndois\x1b[31m\x7f"), QStringLiteral("um dois [31m "));
    EXPECT_EQ(shownText("\xe2\x80\xae"
                        "evil\xe2\x81\xa6"),
              QStringLiteral("evil"));
    EXPECT_EQ(shownText(std::string(1'000'000, 'W')).size(), 300);
    EXPECT_EQ(shownText(std::string(10'000, 'W'), 4000).size(), 4000) << "where more than a line is read";
    std::string faces;
    for (int face = 0; face < 400; ++face) {
        faces += "\xf0\x9f\x98\x80";
    }
    EXPECT_EQ(shownText("x" + faces).size(), 299) << "no half of a character at the end";
    EXPECT_EQ(shownText(""), QString());
}

} // namespace
} // namespace ondavia
