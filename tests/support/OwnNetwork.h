#pragma once

#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

namespace quorl::test {

/// Puts this thread, and all that it starts from here on, into a network with nothing but a loopback
/// interface, where every port is free. False where the system does not allow it: then the ports are
/// everyone's.
inline bool enterOwnNetwork() {
    // Root needs no user namespace, and a process with threads may not make one.
    if (unshare(CLONE_NEWNET) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
        return false;
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq loopback{};
    std::strcpy(loopback.ifr_name, "lo");
    loopback.ifr_flags = IFF_UP | IFF_RUNNING;
    const bool isUp = ioctl(socket, SIOCSIFFLAGS, &loopback) == 0;
    close(socket);
    return isUp;
}

} // namespace quorl::test
