#pragma once
// A relay on 127.0.0.1 between the program and a server that holds every
// piece of traffic back for half a chosen round trip each way: the delay of
// a farm's network (a server in the packing shed, Wi-Fi to the house) on
// one machine. Bytes pass in order and whole; only their time changes.

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace Bench {

class Relay {
public:
    // Listens on a free port of 127.0.0.1 and passes each connection on to
    // host:port. Raises std::runtime_error when it can't listen.
    Relay(const std::string &host, int port);
    ~Relay();
    Relay(const Relay &) = delete;
    Relay &operator=(const Relay &) = delete;

    int port() const { return mPort; }
    // The time a statement's round trip gains: half of it on the way out,
    // half on the way back. Applies to what is sent from now on.
    void setRoundTrip(std::chrono::microseconds delay) { mHalf = delay.count() / 2; }

private:
    struct Link;
    void acceptLoop();

    std::string mHost;
    int mServerPort;
    int mListen = -1;
    int mPort = 0;
    std::atomic<long long> mHalf{0}; // microseconds
    std::atomic<bool> mStop{false};
    std::thread mAcceptor;
    std::mutex mLinksLock;
    std::vector<std::unique_ptr<Link>> mLinks;
};

}
