#include "fetch/module/https_exchange.hpp"

#include "fetch/module/certificate_verification.hpp"
#include "report.hpp"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <openssl/err.h>
#include <openssl/ssl.h>

#include <exception>
#include <string>

namespace beast = boost::beast;
namespace http = beast::http;
namespace net = boost::asio;
namespace ssl = net::ssl;

namespace {

constexpr int http_1_0 = 10;

// Does not compare the host name with the certificate: see "Kept on purpose" in architecture.md.
ssl::context verifying_context()
{
  ssl::context context{ssl::context::tlsv12_client};
  // Asio's own call takes another kind of callback. The verify mode stays until it is set below.
  SSL_CTX_set_verify(context.native_handle(), SSL_CTX_get_verify_mode(context.native_handle()),
                     verify_server_certificates);
  context.set_default_verify_paths();
  context.set_verify_mode(ssl::verify_peer);
  return context;
}

http::request<http::empty_body> page_request(std::string const& host,
                                             std::string const& request_target)
{
  http::request<http::empty_body> request{http::verb::get, request_target, http_1_0};
  request.set(http::field::host, host);
  request.set(http::field::user_agent, "Boost.Beast/330"); // fixed: not the library's version
  return request;
}

} // namespace

bool fetch_over_https(char const* host, char const* port, char const* request_target,
                      body_handler* handle_body, void* user_data, bool debug) noexcept
{
  try {
    net::io_context io;
    auto context = verifying_context();
    net::ip::tcp::resolver resolver{io};
    ssl::stream<beast::tcp_stream> stream{io, context};
    if (!SSL_set_tlsext_host_name(stream.native_handle(), host))
      throw beast::system_error{static_cast<int>(ERR_get_error()), net::error::get_ssl_category()};
    // No time-outs: a caller of a blocking run asked to wait, and for a copy nobody waits.
    beast::get_lowest_layer(stream).connect(resolver.resolve(host, port));
    stream.handshake(ssl::stream_base::client);

    http::write(stream, page_request(host, request_target));
    beast::flat_buffer buffer;
    http::response<http::dynamic_body> response;
    beast::error_code error;
    http::read(stream, buffer, response, error);
    if (error) {
      // Category and number: the message differs between versions of the library.
      report(error.to_string(), debug);
      return false;
    }
    auto const body = beast::buffers_to_string(response.body().data());
    if (!handle_body(user_data, body.data(), body.size(), debug))
      return false;

    stream.shutdown(error);
    if (error == net::error::eof)
      error = {}; // the server has ended TLS, by close_notify or another alert: a clean end
    if (error)
      report(error.to_string(), debug);
    return !error;
  } catch (std::exception const& error) {
    report(error.what(), debug);
    return false;
  }
}
