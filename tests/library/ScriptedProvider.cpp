#include "ScriptedProvider.h"

#include <zlib.h>

#include <algorithm>

namespace ondavia::testing {
namespace {

/// A type that the server does not compress.
constexpr const char* contentType = "application/octet-stream";

} // namespace

ScriptedProvider::ScriptedProvider() {
    for (const char* path : {"/player_api.php", guideDocument}) {
        m_http.server.Get(path, [this](const httplib::Request& request, httplib::Response& response) {
            answer(request, response);
        });
    }
    m_http.start();
}

void ScriptedProvider::script(const std::string& action, std::vector<Reply> replies) {
    const std::lock_guard lock(m_mutex);
    m_replies[action] = std::move(replies);
    m_requests[action] = 0;
}

int ScriptedProvider::requestCount(const std::string& action) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_requests.find(action);
    return found == m_requests.end() ? 0 : found->second;
}

void ScriptedProvider::answer(const httplib::Request& request, httplib::Response& response) {
    Reply reply;
    {
        const std::lock_guard lock(m_mutex);
        const std::string action =
            request.path == guideDocument ? request.path : request.get_param_value("action");
        const auto number = static_cast<std::size_t>(m_requests[action]++);
        const auto& replies = m_replies[action];
        if (!replies.empty()) {
            reply = replies[std::min(number, replies.size() - 1)];
        }
    }
    if (reply) {
        reply(request, response);
    }
}

Reply body(const std::string& text) {
    return [text](const httplib::Request&, httplib::Response& response) {
        response.set_content(text, contentType);
    };
}

Reply failure(int status) {
    return [status](const httplib::Request&, httplib::Response& response) { response.status = status; };
}

Reply cutShort(const std::string& text) {
    return [text](const httplib::Request&, httplib::Response& response) {
        response.set_content_provider(text.size() + 1000, contentType,
                                      [text](std::size_t offset, std::size_t, httplib::DataSink& sink) {
                                          return offset < text.size() &&
                                                 sink.write(text.data() + offset, text.size() - offset);
                                      });
    };
}

Reply longBody(std::string head, std::string filler, std::size_t bytes) {
    return [head = std::move(head), filler = std::move(filler), bytes](const httplib::Request&,
                                                                       httplib::Response& response) {
        response.set_chunked_content_provider(
            contentType, [head, filler, bytes](std::size_t offset, httplib::DataSink& sink) {
                const std::string& part = offset == 0 ? head : filler;
                if (!sink.write(part.data(), part.size())) {
                    return false;
                }
                if (offset + part.size() >= bytes) {
                    sink.done();
                }
                return true;
            });
    };
}

Reply gzipped(std::string packed) {
    return [packed = std::move(packed)](const httplib::Request&, httplib::Response& response) {
        response.set_header("Content-Encoding", "gzip");
        response.set_content(packed, contentType);
    };
}

std::string packedBomb(const std::string& head, char filler, std::size_t bytes) {
    constexpr int gzipWindow = 15 + 16;
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, gzipWindow, 9, Z_DEFAULT_STRATEGY);
    std::string packed;
    std::string room(1 << 16, '\0');
    const auto feed = [&](std::string piece, int flush) {
        stream.next_in = reinterpret_cast<Bytef*>(piece.data());
        stream.avail_in = static_cast<uInt>(piece.size());
        do {
            stream.next_out = reinterpret_cast<Bytef*>(room.data());
            stream.avail_out = static_cast<uInt>(room.size());
            deflate(&stream, flush);
            packed.append(room, 0, room.size() - stream.avail_out);
        } while (stream.avail_out == 0);
    };
    feed(head, Z_NO_FLUSH);
    const std::string piece(1 << 20, filler);
    for (std::size_t sent = 0; sent < bytes; sent += piece.size()) {
        feed(piece, Z_NO_FLUSH);
    }
    feed({}, Z_FINISH);
    deflateEnd(&stream);
    return packed;
}

std::string categoriesJSON(const std::vector<std::pair<std::string, std::string>>& categories) {
    std::string text = "[";
    for (const auto& [id, name] : categories) {
        text += (text.size() > 1 ? "," : "") + std::string(R"({"category_id":")") + id +
                R"(","category_name":")" + name + R"(","parent_id":0})";
    }
    return text + "]";
}

std::string listJSON(ListKind kind, const ListRows& rows) {
    const std::string idKey = kind == ListKind::Series ? "series_id" : "stream_id";
    std::string text = "[";
    for (std::int64_t id = rows.first; id < rows.first + rows.count; ++id) {
        const std::string number = std::to_string(id);
        text += (text.size() > 1 ? R"(,{"num":)" : R"({"num":)") + number + R"(,"name":")" + rows.name + " " +
                number + R"(",")" + idKey + R"(":)" + number + R"(,"category_id":")" + rows.categoryId +
                R"("})";
    }
    return text + "]";
}

} // namespace ondavia::testing
