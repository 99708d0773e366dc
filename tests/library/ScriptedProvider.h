#pragma once

#include "support/HttpServer.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace ondavia::testing {

using Reply = httplib::Server::Handler;

/// The action that stands for the guide, which has a page of its own.
inline constexpr const char* guideDocument = "/xmltv.php";

/// Answers each action with its scripted replies in their order, the last one again and again; the log-in
/// is the action "". What is not scripted is an empty body.
class ScriptedProvider final {
public:
    /// Ends the server and with it what it still sends.
    void stop() { m_http.stop(); }
    ScriptedProvider();

    void script(const std::string& action, std::vector<Reply> replies);
    [[nodiscard]] std::string url() const { return m_http.url(); }
    /// How often the action has been asked for.
    [[nodiscard]] int requestCount(const std::string& action) const;

private:
    void answer(const httplib::Request& request, httplib::Response& response);

    mutable std::mutex m_mutex;
    std::map<std::string, std::vector<Reply>> m_replies;
    std::map<std::string, int> m_requests;
    HttpServer m_http;
};

[[nodiscard]] Reply body(const std::string& text);
[[nodiscard]] Reply failure(int status = 500);
/// A body that ends before the length that its header names.
[[nodiscard]] Reply cutShort(const std::string& text);
/// `head`, then `filler` until `bytes` are sent or the client has gone.
[[nodiscard]] Reply longBody(std::string head, std::string filler, std::size_t bytes);
/// `text` as a gzip body.
[[nodiscard]] Reply gzipped(std::string packed);
/// `head` and `bytes` times `filler` as gzip.
[[nodiscard]] std::string packedBomb(const std::string& head, char filler, std::size_t bytes);

/// `[{"category_id":"1","category_name":"A"},...]` of pairs.
[[nodiscard]] std::string categoriesJSON(const std::vector<std::pair<std::string, std::string>>& categories);

enum class ListKind { Live, Movies, Series };
struct ListRows final {
    std::int64_t first = 1;
    std::int64_t count = 1;
    std::string categoryId = "1";
    std::string name = "Item";
};
/// Rows with the ids `first`, `first` + 1 ... and names of `name` and the id.
[[nodiscard]] std::string listJSON(ListKind kind, const ListRows& rows);

} // namespace ondavia::testing
