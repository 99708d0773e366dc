#include "DemoTestSupport.h"

#include <QProcess>

namespace ondavia::demo {

RunningProvider::RunningProvider(DemoOptions options)
    : m_provider(std::move(options))
    , m_url(m_provider.start())
    , m_client(m_url) {
    m_client.set_read_timeout(30);
}

std::string RunningProvider::get(const std::string& path, int status) {
    const auto result = m_client.Get(path);
    if (!result) {
        ADD_FAILURE() << path << ": " << httplib::to_string(result.error());
        return {};
    }
    EXPECT_EQ(result->status, status) << path;
    return result->body;
}

QJsonDocument RunningProvider::json(const std::string& path) {
    QJsonParseError error{};
    auto document = QJsonDocument::fromJson(QByteArray::fromStdString(get(path)), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << path << ": " << error.errorString().toStdString();
    return document;
}

QJsonDocument RunningProvider::api(const std::string& action, const std::string& more) {
    return json(apiPath(action, more));
}

std::string apiPath(const std::string& action, const std::string& more) {
    return "/player_api.php?username=demo&password=demo" + (action.empty() ? "" : "&action=" + action) + more;
}

QByteArray outputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(30000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0);
    return process.readAll();
}

} // namespace ondavia::demo
