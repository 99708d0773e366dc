#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace ondavia {
namespace {

/// The first colour that a file of the interface writes out itself; one that is worked out of another is not
/// meant, nor the absence of any.
std::string colourWrittenIn(const QString& path) {
    static const QRegularExpression written(
        QStringLiteral(R"re("(#[0-9a-fA-F]{3,8}|black|white)"|Qt\.(rgba|hsla|hsva)\(\s*[0-9])re"));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return written.match(QString::fromUtf8(file.readAll())).captured().toStdString();
}

TEST(Colours, AllStandInTheTheme) {
    const QString theme = QStringLiteral(ONDAVIA_SOURCE_FOLDER "/src/style/Theme.qml");
    EXPECT_NE(colourWrittenIn(theme), "");
    QDirIterator files(QStringLiteral(ONDAVIA_SOURCE_FOLDER "/src"), {QStringLiteral("*.qml")}, QDir::Files,
                       QDirIterator::Subdirectories);
    int read = 0;
    while (files.hasNext()) {
        const QString path = files.next();
        if (path != theme) {
            ++read;
            EXPECT_EQ(colourWrittenIn(path), "") << path.toStdString();
        }
    }
    EXPECT_GT(read, 30);
}

} // namespace
} // namespace ondavia
