#include "relay.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <stdexcept>

namespace Bench {

namespace {

using Clock = std::chrono::steady_clock;

int connectTo(const std::string &host, int port)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0)
        return -1;
    int fd = -1;
    for (addrinfo *a = found; a; a = a->ai_next) {
        fd = ::socket(a->ai_family, a->ai_socktype, a->ai_protocol);
        if (fd < 0)
            continue;
        if (::connect(fd, a->ai_addr, a->ai_addrlen) == 0)
            break;
        ::close(fd);
        fd = -1;
    }
    freeaddrinfo(found);
    return fd;
}

void noDelay(int fd)
{
    int one = 1;
    setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
}

// One direction of a connection: what is read from `from` is written to
// `to` once its time has come.
class Pipe {
public:
    Pipe(int from, int to, const std::atomic<long long> &half) : mFrom(from), mTo(to), mHalf(half)
    {
        mReader = std::thread([this] { readLoop(); });
        mWriter = std::thread([this] { writeLoop(); });
    }
    ~Pipe()
    {
        mReader.join();
        mWriter.join();
    }
    // Both ends reached: nothing more passes this way.
    bool finished() const { return mFinished; }

private:
    struct Piece {
        Clock::time_point due;
        std::string bytes;
    };
    void readLoop()
    {
        char buf[65536];
        for (;;) {
            const ssize_t n = ::recv(mFrom, buf, sizeof buf, 0);
            std::lock_guard<std::mutex> lock(mLock);
            if (n <= 0) {
                mEnded = true;
                mWake.notify_all();
                return;
            }
            mQueue.push_back({Clock::now() + std::chrono::microseconds(mHalf.load()), std::string(buf, size_t(n))});
            mWake.notify_all();
        }
    }
    void writeLoop()
    {
        std::unique_lock<std::mutex> lock(mLock);
        for (;;) {
            mWake.wait(lock, [this] { return mEnded || !mQueue.empty(); });
            if (mQueue.empty()) {
                ::shutdown(mTo, SHUT_WR); // the other side sees the end
                mFinished = true;
                return;
            }
            Piece p = std::move(mQueue.front());
            mQueue.pop_front();
            lock.unlock();
            std::this_thread::sleep_until(p.due);
            size_t sent = 0;
            while (sent < p.bytes.size()) {
                const ssize_t n = ::send(mTo, p.bytes.data() + sent, p.bytes.size() - sent, MSG_NOSIGNAL);
                if (n <= 0)
                    break;
                sent += size_t(n);
            }
            lock.lock();
        }
    }

    int mFrom, mTo;
    const std::atomic<long long> &mHalf;
    std::mutex mLock;
    std::condition_variable mWake;
    std::deque<Piece> mQueue;
    bool mEnded = false;
    std::atomic<bool> mFinished{false};
    std::thread mReader, mWriter;
};

} // namespace

struct Relay::Link {
    Link(int client, int server, const std::atomic<long long> &half)
        : sockets{client, server}, out(client, server, half), back(server, client, half)
    {
    }
    // Shuts both sockets down, which ends the pipes; the pipes wait for
    // their threads, then the sockets close.
    ~Link()
    {
        ::shutdown(sockets.client, SHUT_RDWR);
        ::shutdown(sockets.server, SHUT_RDWR);
    }
    bool finished() const { return out.finished() && back.finished(); }

    struct Sockets {
        int client, server;
        ~Sockets()
        {
            ::close(client);
            ::close(server);
        }
    } sockets; // first made, last gone
    Pipe out, back;
};

Relay::Relay(const std::string &host, int port) : mHost(host), mServerPort(port)
{
    mListen = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    a.sin_port = 0;
    socklen_t len = sizeof a;
    if (mListen < 0 || ::bind(mListen, reinterpret_cast<sockaddr *>(&a), sizeof a) != 0 || ::listen(mListen, 16) != 0 ||
        ::getsockname(mListen, reinterpret_cast<sockaddr *>(&a), &len) != 0)
        throw std::runtime_error("the relay can't listen on 127.0.0.1");
    mPort = ntohs(a.sin_port);
    mAcceptor = std::thread([this] { acceptLoop(); });
}

Relay::~Relay()
{
    mStop = true;
    mAcceptor.join();
    ::close(mListen);
    std::lock_guard<std::mutex> lock(mLinksLock);
    mLinks.clear();
}

void Relay::acceptLoop()
{
    while (!mStop) {
        pollfd p{mListen, POLLIN, 0};
        if (::poll(&p, 1, 100) <= 0)
            continue;
        const int client = ::accept(mListen, nullptr, nullptr);
        if (client < 0)
            continue;
        const int server = connectTo(mHost, mServerPort);
        if (server < 0) {
            ::close(client);
            continue;
        }
        noDelay(client);
        noDelay(server);
        std::lock_guard<std::mutex> lock(mLinksLock);
        // the connections the program has closed since
        mLinks.erase(std::remove_if(mLinks.begin(), mLinks.end(),
                                    [](const std::unique_ptr<Link> &l) { return l->finished(); }),
                     mLinks.end());
        mLinks.push_back(std::make_unique<Link>(client, server, mHalf));
    }
}

}
