#pragma once

#include "demo/DemoProvider.h"
#include "support/TestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>
#include <httplib.h>

#include <string>

namespace ondavia::demo {

/// A provider of a test's own on a free port, and a client for it.
class RunningProvider final {
public:
    explicit RunningProvider(DemoOptions options = {});

    DemoProvider& provider() { return m_provider; }
    httplib::Client& client() { return m_client; }
    [[nodiscard]] const std::string& url() const { return m_url; }

    /// The body of a GET that must answer `status`.
    std::string get(const std::string& path, int status = 200);
    QJsonDocument json(const std::string& path);
    /// An API action of the right account; empty for the log-in.
    QJsonDocument api(const std::string& action, const std::string& more = {});
    QJsonArray list(const std::string& action) { return api(action).array(); }

private:
    DemoProvider m_provider;
    std::string m_url;
    httplib::Client m_client;
};

std::string apiPath(const std::string& action, const std::string& more = {});

/// What a program writes to standard output and error; fails the test when it does not end well.
QByteArray outputOf(const QString& program, const QStringList& arguments);

} // namespace ondavia::demo
