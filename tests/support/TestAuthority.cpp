#include "support/TestAuthority.h"

#include <QProcess>

#include <fstream>
#include <gtest/gtest.h>

namespace ondavia::testing {
namespace {

constexpr int patience = 60'000;

QString text(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

bool succeeds(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool hasEnded = process.waitForFinished(patience);
    if (!hasEnded || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        ::testing::Test::RecordProperty("refusal", process.readAll().toStdString());
        return false;
    }
    return true;
}

void openssl(const QStringList& arguments) {
    EXPECT_TRUE(succeeds(QStringLiteral("openssl"), arguments))
        << arguments.join(QLatin1Char(' ')).toStdString();
}

void write(const std::filesystem::path& path, const std::string& content) {
    std::ofstream(path) << content;
}

QStringList keyTo(const std::filesystem::path& path) {
    return {QStringLiteral("-nodes"),
            QStringLiteral("-newkey"),
            QStringLiteral("ec"),
            QStringLiteral("-pkeyopt"),
            QStringLiteral("ec_paramgen_curve:prime256v1"),
            QStringLiteral("-keyout"),
            text(path)};
}

constexpr const char* storeFolder = "/etc/ssl/certs";

/// `command` in a view of the file system where `folder` stands in the place of the system's store.
QStringList withStore(const std::filesystem::path& folder, const QStringList& command) {
    const QString script =
        QStringLiteral("mount --bind \"$0\" %1 && exec \"$@\"").arg(QString::fromLatin1(storeFolder));
    return QStringList{QStringLiteral("unshare"),
                       QStringLiteral("--map-root-user"),
                       QStringLiteral("--mount"),
                       QStringLiteral("sh"),
                       QStringLiteral("-c"),
                       script,
                       text(folder)} +
           command;
}

} // namespace

TestAuthority::TestAuthority()
    : m_store(m_folder.path() / "store") {
    const auto folder = m_folder.path();
    write(folder / "authority.cnf", "[req]\ndistinguished_name = name\nprompt = no\n"
                                    "[name]\nCN = Ondavia test authority\n"
                                    "[authority]\nbasicConstraints = critical,CA:TRUE\n"
                                    "keyUsage = critical,keyCertSign,cRLSign\nsubjectKeyIdentifier = hash\n");
    std::filesystem::create_directory(m_store);
    const auto certificate = m_store / "authority.pem";
    openssl(QStringList{QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-config"),
                        text(folder / "authority.cnf"), QStringLiteral("-extensions"),
                        QStringLiteral("authority"), QStringLiteral("-days"), QStringLiteral("2"),
                        QStringLiteral("-out"), text(certificate)} +
            keyTo(folder / "authority.key"));
    // Both forms in which libraries read a system's store: one file, and a file a certificate.
    std::filesystem::copy_file(certificate, m_store / "ca-certificates.crt");
    openssl({QStringLiteral("rehash"), text(m_store)});
}

ServerCertificate TestAuthority::issue(const std::string& subjectAltName, int days) {
    const std::string name = "server" + std::to_string(++m_issued);
    const auto folder = m_folder.path();
    const ServerCertificate issued{folder / (name + ".pem"), folder / (name + ".key")};
    write(folder / (name + ".cnf"),
          "[req]\ndistinguished_name = name\nprompt = no\n[name]\nCN = " + name +
              "\n[server]\nbasicConstraints = critical,CA:FALSE\nsubjectAltName = " + subjectAltName + "\n");
    const QString settings = text(folder / (name + ".cnf"));
    const QString request = text(folder / (name + ".csr"));
    openssl(QStringList{QStringLiteral("req"), QStringLiteral("-new"), QStringLiteral("-config"), settings,
                        QStringLiteral("-out"), request} +
            keyTo(issued.key));
    openssl({QStringLiteral("x509"), QStringLiteral("-req"), QStringLiteral("-in"), request,
             QStringLiteral("-CA"), text(m_store / "authority.pem"), QStringLiteral("-CAkey"),
             text(folder / "authority.key"), QStringLiteral("-CAcreateserial"), QStringLiteral("-CAserial"),
             text(folder / "serial"), QStringLiteral("-days"), QString::number(days),
             QStringLiteral("-extfile"), settings, QStringLiteral("-extensions"), QStringLiteral("server"),
             QStringLiteral("-out"), text(issued.certificate)});
    return issued;
}

QStringList TestAuthority::trusting(const QStringList& command) const {
    return withStore(m_store, command);
}

bool TestAuthority::canBeTrusted() {
    const TemporaryFolder folder;
    QStringList command = withStore(folder.path(), {QStringLiteral("true")});
    const QString program = command.takeFirst();
    return succeeds(program, command);
}

} // namespace ondavia::testing
