#include <gtest/gtest.h>
#include <net/if.h>
#include <net/route.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Platform/Linux/DefaultRoutes.hpp"
#include "Platform/Linux/LinuxNetworkPath.hpp"
#include "Platform/Posix/PosixFiles.hpp"

namespace ostrel {
namespace {

using Interfaces = std::vector<std::string>;

constexpr std::string_view header =
    "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT\n";
constexpr std::string_view zeros = "00000000000000000000000000000000";

std::string ipv6Row(std::string_view destination, std::string_view length, std::string_view flags,
                    std::string_view interface) {
  std::string row(destination);
  for (const auto piece : {length, zeros, std::string_view("00"), zeros, std::string_view("00000400"),
                           std::string_view("00000001"), std::string_view("00000000"), flags, interface}) {
    row += ' ';
    row += piece;
  }
  return row + '\n';
}

TEST(NetworkPath, UsesTheInterfacesOfTheDefaultRoutes) {
  const std::string routes = std::string(header) +
                             "wlan0\t00000000\t0101A8C0\t0003\t0\t0\t600\t00000000\t0\t0\t0   \n"
                             "eth0\t00000000\t0101A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0   \n"
                             "eth0\t00000000\t0201A8C0\t0003\t0\t0\t200\t00000000\t0\t0\t0   \n"
                             "docker0\t000011AC\t00000000\t0001\t0\t0\t0\t0000FFFF\t0\t0\t0   \n"
                             "half0\t00000000\t00000000\t0001\t0\t0\t0\t00000080\t0\t0\t0   \n"
                             "down0\t00000000\t0101A8C0\t0002\t0\t0\t0\t00000000\t0\t0\t0   \n"
                             "*\t00000000\t00000000\t0201\t0\t0\t0\t00000000\t0\t0\t0   \n";
  const std::string ipv6Routes =
      ipv6Row(zeros, "00", "00000003", "usb0") + ipv6Row(zeros, "00", "00000003", "eth0") +
      ipv6Row(zeros, "00", "00200200", "lo") + ipv6Row(zeros, "01", "00000001", "veth0") +
      ipv6Row("fe800000000000000000000000000000", "00", "00000001", "br0");
  const auto path = pathOfRoutes(routes, ipv6Routes);
  EXPECT_TRUE(path.satisfied);
  EXPECT_EQ(path.interfaces, (Interfaces{"eth0", "usb0", "wlan0"}));
  for (const std::string_view table : {std::string_view(), header, std::string_view("eth0\t00000000\t0"),
                                       std::string_view("\n \t\n\0\xff", 6)}) {
    EXPECT_EQ(pathOfRoutes(table, table), NetworkPathUpdate()) << table;
  }
}

TEST(NetworkPath, IsReportedOnceAndNotInsideTheCall) {
  PosixMainQueue queue;
  const PosixFiles files([](std::string_view path) { return std::string(path); });
  LinuxNetworkPath path(queue, files);
  int reported = 0;
  const auto token = path.observe([&](const NetworkPathUpdate& update) {
    ++reported;
    EXPECT_EQ(update.satisfied, !update.interfaces.empty());
  });
  {
    const auto other = path.observe([](const auto&) { ADD_FAILURE() << "its token is destroyed"; });
  }
  EXPECT_EQ(reported, 0);
  queue.processDueWork();
  EXPECT_EQ(reported, 1);
}

void expect(bool isTrue, const char* what) {
  if (!isTrue) std::fprintf(stderr, "%s\n", what);
  if (!isTrue) std::_Exit(1);
}

/// In a network of its own, whose default route changes until the kernel's buffer overflows.
void overflowRoutes() {
  const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  char loopback[] = "lo";
  ifreq link{};
  std::memcpy(link.ifr_name, loopback, sizeof loopback);
  link.ifr_flags = IFF_UP | IFF_RUNNING;
  expect(::ioctl(socket, SIOCSIFFLAGS, &link) == 0, "the link cannot be set up");
  rtentry route{};
  route.rt_dst.sa_family = route.rt_gateway.sa_family = route.rt_genmask.sa_family = AF_INET;
  route.rt_flags = RTF_UP;
  route.rt_dev = loopback;
  PosixMainQueue queue;
  const PosixFiles files([](std::string_view path) { return std::string(path); });
  LinuxNetworkPath path(queue, files);
  std::vector<NetworkPathUpdate> updates;
  const auto token = path.observe([&](const auto& update) { updates.push_back(update); });
  queue.processDueWork();
  for (int change = 0; change < 5000; ++change) {
    expect(::ioctl(socket, change % 2 == 0 ? SIOCADDRT : SIOCDELRT, &route) == 0,
           "the route cannot be changed");
  }
  expect(::ioctl(socket, SIOCADDRT, &route) == 0, "the route cannot be changed");
  queue.processDueWork();
  queue.processDueWork();
  expect(updates == std::vector<NetworkPathUpdate>{{}, {true, {"lo"}}},
         "the path after the flood is not reported once");
  expect(::ioctl(socket, SIOCDELRT, &route) == 0, "the route cannot be changed");
  queue.processDueWork();
  queue.processDueWork();
  expect(updates.size() == 3 && !updates.back().satisfied, "a change after the flood is not reported");
  std::_Exit(0);
}

TEST(NetworkPath, IsReadAgainAfterTheKernelBufferOverflows) {
  EXPECT_EXIT(
      {
        if (::unshare(CLONE_NEWNET) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) std::_Exit(77);
        overflowRoutes();
      },
      [](int status) { return WIFEXITED(status) && (WEXITSTATUS(status) == 0 || WEXITSTATUS(status) == 77); },
      "");
}

}  // namespace
}  // namespace ostrel
