#include "support/Download.h"

#include <curl/curl.h>

#include <stdexcept>

namespace ondavia::bench {

std::string download(const std::string& url) {
    std::string body;
    CURL* curl = curl_easy_init();
    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_BUFFERSIZE, 256L << 10);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &body);
    curl_easy_setopt(
        curl, CURLOPT_WRITEFUNCTION, +[](char* bytes, std::size_t, std::size_t size, void* target) {
            static_cast<std::string*>(target)->append(bytes, size);
            return size;
        });
    const CURLcode code = curl_easy_perform(curl);
    curl_easy_cleanup(curl);
    if (code != CURLE_OK) {
        throw std::runtime_error(curl_easy_strerror(code));
    }
    return body;
}

} // namespace ondavia::bench
