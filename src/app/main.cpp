#include "app/MainWindow.h"
#include "app/QtMessages.h"
#include "app/Services.h"
#include "base/Heap.h"
#include "base/Redaction.h"
#include "base/VisibleText.h"
#include "platform/linux/MessageBus.h"
#include "screens/FailureWindow.h"

#include <QCommandLineParser>
#include <QGuiApplication>

#include <algorithm>
#include <clocale>
#include <optional>

namespace {

int runApplication(const QString& language) {
    ondavia::Services services(ondavia::MpvOutputs::Window);
    const ondavia::MainWindow window(services, language.toStdString());
    return QGuiApplication::exec();
}

/// On standard error.
void tellFailure(const std::exception& failure) {
    ondavia::writeLine(stderr, "error: " + ondavia::maskSecrets(failure.what()));
}

/// Tells the user why the application cannot start; whether another try is wanted.
bool wantsRetryAfter(const std::exception& failure, const QString& language) {
    tellFailure(failure);
    try {
        const ondavia::FailureWindow window(failure, language.toStdString());
        QGuiApplication::exec();
        return window.wantsRetry();
    } catch (const std::exception& error) {
        tellFailure(error);
        return false;
    }
}

/// The words of the command line; ends the process where they ask for help or for the version.
class Options final {
public:
    Options() {
        m_parser.addHelpOption();
        m_parser.addVersionOption();
        m_parser.addOption(m_language);
    }

    /// Help and version need no display, and so no application that wants one.
    void answerWithoutDisplay(int argc, char** argv) {
        QStringList words;
        for (int index = 0; index < argc; ++index) {
            words.append(QString::fromLocal8Bit(argv[index]));
        }
        m_parser.parse(words);
        const QStringList answers{QStringLiteral("help"), QStringLiteral("help-all"),
                                  QStringLiteral("version")};
        if (std::ranges::any_of(answers, [this](const QString& option) { return m_parser.isSet(option); })) {
            const QCoreApplication application(argc, argv);
            m_parser.process(application);
        }
    }
    [[nodiscard]] QString language(const QCoreApplication& application) {
        m_parser.process(application);
        return m_parser.value(m_language);
    }

private:
    QCommandLineParser m_parser;
    QCommandLineOption m_language{QStringLiteral("language"),
                                  QStringLiteral("Language of the interface: pt, en, es or fr."),
                                  QStringLiteral("code")};
};

} // namespace

int main(int argc, char** argv) {
    ondavia::keepHeapSmall();
    ondavia::routeQtMessages();
    QCoreApplication::setApplicationName(QStringLiteral("ondavia"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ONDAVIA_VERSION));
    Options options;
    options.answerWithoutDisplay(argc, argv);

    auto detour = std::make_optional<ondavia::SilentBusDetour>();
    const QGuiApplication application(argc, argv);
    detour.reset();
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Ondavia"));
    QGuiApplication::setDesktopFileName(QStringLiteral("ondavia"));
    // libmpv reads and writes numbers by the C locale.
    std::setlocale(LC_NUMERIC, "C");
    const QString language = options.language(application);
    while (true) {
        try {
            return runApplication(language);
        } catch (const std::exception& error) {
            if (!wantsRetryAfter(error, language)) {
                return 1;
            }
        }
    }
}
