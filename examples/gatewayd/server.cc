#include "server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include "addresses.h"
#include "request_head.h"

namespace {

// The library closes what is beyond these; Connections makes room below them.
constexpr unsigned int kSlack = 32;

int descriptorOf(MHD_Connection* connection) {
  return MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
}

std::string addressOf(MHD_Connection* connection) {
  return countedAddress(
      MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS)->client_addr);
}

MHD_Result addHeader(void* request, MHD_ValueKind /*kind*/, const char* name, std::size_t nameSize,
                     const char* value, std::size_t valueSize) {
  std::string small(name, nameSize);
  for (char& c : small) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  static_cast<Request*>(request)->headers.emplace_back(
      std::move(small), value != nullptr ? std::string(value, valueSize) : "");
  return MHD_YES;
}

// Escapes stay as they are: paths are cut into segments before they are read.
std::size_t leaveEscapes(void* /*closure*/, MHD_Connection* /*connection*/, char* text) {
  return std::strlen(text);
}

// No SO_REUSEPORT: a port has one server. SO_REUSEADDR lets a restart have it at once.
int listenOn(int port, int& got, std::string& problem) {
  const int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int on = 1;
  setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const general = reinterpret_cast<sockaddr*>(&address);
  if (fd < 0 || bind(fd, general, size) != 0 || listen(fd, SOMAXCONN) != 0 ||
      getsockname(fd, general, &size) != 0) {
    problem = std::strerror(errno);
    if (fd >= 0) {
      close(fd);
    }
    return -1;
  }
  got = ntohs(address.sin_port);
  return fd;
}

}  // namespace

int Server::start(int port, const Tls& tls, std::string& problem) {
  int got = 0;
  const int listening = listenOn(port, got, problem);
  if (listening < 0) {
    return 0;
  }
  daemon_ = startDaemon(listening, tls);
  if (daemon_ == nullptr) {
    close(listening);
    problem = tls.key.empty() ? "the server library does not start"
                              : "the certificate and its key are none, or do not fit";
    return 0;
  }
  return got;
}

MHD_Daemon* Server::startDaemon(int listening, const Tls& tls) {
  const auto seconds = [](std::chrono::seconds time) {
    return static_cast<unsigned>(time.count());
  };
  const auto text = [](const std::string& from) { return const_cast<char*>(from.c_str()); };
  const MHD_OptionItem certificate[] = {
      {MHD_OPTION_HTTPS_MEM_CERT, 0, text(tls.certificate)},
      {MHD_OPTION_HTTPS_MEM_KEY, 0, text(tls.key)},
      {MHD_OPTION_END, 0, nullptr},
  };
  const MHD_OptionItem none[] = {{MHD_OPTION_END, 0, nullptr}};
  const unsigned int flags = MHD_USE_EPOLL_INTERNAL_THREAD | MHD_ALLOW_SUSPEND_RESUME |
                             (tls.key.empty() ? 0U : static_cast<unsigned int>(MHD_USE_TLS));
  return MHD_start_daemon(flags, 0, nullptr, nullptr, handle, this,                    //
                          MHD_OPTION_LISTEN_SOCKET, listening,                         //
                          MHD_OPTION_CONNECTION_LIMIT, limits::kConnections + kSlack,  //
                          MHD_OPTION_PER_IP_CONNECTION_LIMIT,
                          limits::kConnectionsOfAddress + kSlack,
                          MHD_OPTION_CONNECTION_MEMORY_LIMIT, limits::kConnectionMemory,  //
                          MHD_OPTION_CONNECTION_TIMEOUT, seconds(limits::kIdle),          //
                          MHD_OPTION_UNESCAPE_CALLBACK, leaveEscapes, nullptr,            //
                          MHD_OPTION_NOTIFY_COMPLETED, ended, this,                       //
                          MHD_OPTION_NOTIFY_CONNECTION, connected, this,                  //
                          MHD_OPTION_ARRAY, tls.key.empty() ? none : certificate, MHD_OPTION_END);
}

// The workers come first: each connection that they hold suspended is resumed by the end of its
// job, and the library cannot stop before. Jobs that have not begun are answered with 503.
void Server::stop() {
  if (daemon_ == nullptr) {
    return;
  }
  const MHD_socket listening = MHD_quiesce_daemon(daemon_);
  isStopping_ = true;
  storeWorkers_.stop();
  passwordWorkers_.stop();
  MHD_stop_daemon(std::exchange(daemon_, nullptr));
  if (listening != MHD_INVALID_SOCKET) {
    close(listening);
  }
}

void Server::connected(void* server, MHD_Connection* connection, void** /*unused*/,
                       MHD_ConnectionNotificationCode code) {
  Connections& connections = static_cast<Server*>(server)->connections_;
  if (code == MHD_CONNECTION_NOTIFY_STARTED) {
    connections.opened(descriptorOf(connection), addressOf(connection));
  } else {
    connections.closed(descriptorOf(connection));
  }
}

void Server::ended(void* server, MHD_Connection* connection, void** visit,
                   MHD_RequestTerminationCode /*code*/) {
  delete static_cast<Visit*>(std::exchange(*visit, nullptr));
  static_cast<Server*>(server)->connections_.answered(descriptorOf(connection));
}

// Called with the head, then with each part of the body, then when all is there, and once more
// when the workers have made the answer.
MHD_Result Server::handle(void* server, MHD_Connection* connection, const char* url,
                          const char* method, const char* /*version*/, const char* upload,
                          std::size_t* uploadSize, void** visit) {
  Server& self = *static_cast<Server*>(server);
  if (*visit == nullptr) {
    auto made = std::make_unique<Visit>();
    made->request.method = method;
    made->request.path = url;
    made->request.address = addressOf(connection);
    *visit = made.release();
    return self.begin(connection, *static_cast<Visit*>(*visit));
  }
  Visit& current = *static_cast<Visit*>(*visit);
  if (*uploadSize > 0) {
    if (!current.isRefused) {
      current.request.body.append(upload, *uploadSize);
    }
    *uploadSize = 0;
    return current.request.body.size() <= limits::kBody ? MHD_YES : MHD_NO;
  }
  return current.isAnswered ? self.send(connection, current) : self.work(connection, current);
}

MHD_Result Server::begin(MHD_Connection* connection, Visit& visit) {
  MHD_get_connection_values_n(connection, MHD_HEADER_KIND, addHeader, &visit.request);
  std::optional<Reply> refused = api_.refuse(visit.request);
  if (!refused) {
    return MHD_YES;
  }
  visit.reply = std::move(*refused);
  visit.isRefused = true;
  visit.isAnswered = true;
  const std::string length = visit.request.header("content-length");
  const bool isSmall = !visit.request.has("transfer-encoding") && !visit.request.has("expect") &&
                       length.size() <= 5 &&
                       std::strtoul(length.c_str(), nullptr, 10) <= limits::kBody;
  return isSmall ? MHD_YES : send(connection, visit);
}

MHD_Result Server::work(MHD_Connection* connection, Visit& visit) {
  const bool isSlow = api_.asksPassword(visit.request);
  connections_.working(descriptorOf(connection), api_.hasSession(visit.request));
  MHD_suspend_connection(connection);
  const bool isTaken = (isSlow ? passwordWorkers_ : storeWorkers_).push([=, &visit] {
    visit.reply =
        isStopping_ ? refusal(503, "the gateway is stopping") : api_.answer(visit.request);
    visit.isAnswered = true;
    MHD_resume_connection(connection);
  });
  if (!isTaken) {
    visit.reply = refusal(503, "the gateway is stopping");
    visit.isAnswered = true;
    MHD_resume_connection(connection);
  }
  return MHD_YES;
}

MHD_Result Server::send(MHD_Connection* connection, Visit& visit) {
  addCommonHeaders(visit.request, visit.reply);
  if (visit.isRefused || isStopping_) {
    visit.reply.headers.emplace_back("Connection", "close");
  }
  const std::string& body = visit.reply.body;
  MHD_Response* const response = MHD_create_response_from_buffer(
      body.size(), const_cast<char*>(body.data()), MHD_RESPMEM_MUST_COPY);
  if (response == nullptr) {
    return MHD_NO;
  }
  if (!body.empty()) {
    MHD_add_response_header(response, "Content-Type", visit.reply.type);
  }
  for (const auto& [name, value] : visit.reply.headers) {
    MHD_add_response_header(response, name, value.c_str());
  }
  const MHD_Result queued =
      MHD_queue_response(connection, static_cast<unsigned int>(visit.reply.status), response);
  MHD_destroy_response(response);
  return queued;
}
