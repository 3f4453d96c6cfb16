// The server: GNU libmicrohttpd with every limit set, between the network and the handlers.
//
// One thread moves bytes. It shows the head of a request to Api::refuse before it takes a byte of
// the body; what passes is read, then suspended, and handed to a lane of workers, whose answer it
// sends. So a slow client costs a buffer and never a thread.
//
// A request that is refused ends its connection: one whose body is small is read and thrown away
// first, as a client does not read its answer before; any other body is left unread.
#ifndef HEARTH_EXAMPLES_GATEWAYD_SERVER_H
#define HEARTH_EXAMPLES_GATEWAYD_SERVER_H

#include <microhttpd.h>

#include <atomic>
#include <string>

#include "api.h"
#include "connections.h"
#include "exchange.h"
#include "server_limits.h"
#include "workers.h"

// The contents of the files of a certificate and its key; plain HTTP where they are empty.
struct Tls {
  std::string certificate;
  std::string key;
};

class Server {
 public:
  // The handlers must outlive the server.
  explicit Server(Api& api) : api_(api) {}
  ~Server() { stop(); }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  // Listens on a port of 127.0.0.1, any free one for 0, and serves from now on. Result: the port.
  // Failure: 0, and why in `problem`: the port is in use, or the certificate is none.
  int start(int port, const Tls& tls, std::string& problem);

  // Takes no more connections, finishes what is being worked on, ends the rest. Returns within two
  // seconds, whatever clients do.
  void stop();

 private:
  // A request on its way through the server.
  struct Visit {
    Request request;
    Reply reply;
    bool isRefused = false;
    bool isAnswered = false;  // the reply is made and can be sent
  };

  static MHD_Result handle(void* server, MHD_Connection* connection, const char* url,
                           const char* method, const char* version, const char* upload,
                           std::size_t* uploadSize, void** visit);
  static void ended(void* server, MHD_Connection* connection, void** visit,
                    MHD_RequestTerminationCode code);
  static void connected(void* server, MHD_Connection* connection, void** unused,
                        MHD_ConnectionNotificationCode code);

  MHD_Daemon* startDaemon(int listening, const Tls& tls);
  MHD_Result begin(MHD_Connection* connection, Visit& visit);
  MHD_Result work(MHD_Connection* connection, Visit& visit);
  MHD_Result send(MHD_Connection* connection, Visit& visit);

  Api& api_;
  Connections connections_;
  Workers storeWorkers_{limits::kStoreThreads};
  Workers passwordWorkers_{limits::kPasswordThreads};
  std::atomic<bool> isStopping_{false};
  MHD_Daemon* daemon_ = nullptr;
};

#endif
