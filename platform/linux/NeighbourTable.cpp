// SPDX-License-Identifier: MIT

#include "platform/NeighbourTable.h"

#include "platform/Sleep.h"
#include "platform/linux/FreeBy.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include <arpa/inet.h>
#include <linux/neighbour.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>
#include <netlink/addr.h>
#include <netlink/msg.h>
#include <netlink/netlink.h>
#include <netlink/route/nexthop.h>
#include <netlink/route/route.h>
#include <netlink/socket.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform {
namespace {

constexpr std::uint16_t DiscardPort = 9;
// An answer comes within milliseconds or not at all, and dozens of threads may wait at once.
constexpr unsigned FirstPauseMs = 10;
constexpr unsigned LongestPauseMs = 160;
// Twenty seconds. The kernel gives up by itself, after three seconds as it is delivered.
constexpr int MostPauses = 128;

using NetlinkSocket = std::unique_ptr<nl_sock, FreeBy<nl_socket_free>>;
using Message = std::unique_ptr<nl_msg, FreeBy<nlmsg_free>>;
using Address = std::unique_ptr<nl_addr, FreeBy<nl_addr_put>>;
using Route = std::unique_ptr<rtnl_route, FreeBy<rtnl_route_put>>;

NetlinkSocket ConnectToKernel()
{
    NetlinkSocket kernel(nl_socket_alloc());
    if (kernel == nullptr || nl_connect(kernel.get(), NETLINK_ROUTE) < 0) {
        return nullptr;
    }
    nl_socket_disable_auto_ack(kernel.get());
    return kernel;
}

int KeepRow(nl_msg* message, void* rows)
{
    nlmsghdr* header = nlmsg_hdr(message);
    const nlattr* address = nlmsg_find_attr(header, sizeof(ndmsg), NDA_DST);
    const nlattr* physicalAddress = nlmsg_find_attr(header, sizeof(ndmsg), NDA_LLADDR);
    if (address == nullptr) {
        return NL_SKIP;
    }
    const auto* head = static_cast<const ndmsg*>(nlmsg_data(header));
    NeighbourRow row{};
    row.interfaceIndex = static_cast<std::uint32_t>(head->ndm_ifindex);
    row.type = head->ndm_state;
    row.ipAddress = nla_get_u32(address);
    if (physicalAddress != nullptr) {
        row.physicalAddressLength = static_cast<std::uint32_t>(
            nla_memcpy(row.physicalAddress, physicalAddress, sizeof row.physicalAddress));
    }
    static_cast<std::vector<NeighbourRow>*>(rows)->push_back(row);
    return NL_OK;
}

int KeepError(sockaddr_nl*, nlmsgerr* answer, void* error)
{
    *static_cast<unsigned*>(error) = static_cast<unsigned>(-answer->error);
    return NL_STOP;
}

// Sends one request and takes the whole answer. Puts the neighbours in it into `rows`. 0, or the
// error.
unsigned Ask(nl_sock* kernel, nl_msg* request, std::vector<NeighbourRow>* rows)
{
    unsigned error = 0;
    nl_socket_modify_err_cb(kernel, NL_CB_CUSTOM, KeepError, &error);
    nl_socket_modify_cb(kernel, NL_CB_VALID, NL_CB_CUSTOM, KeepRow, rows);
    if (nl_send_auto(kernel, request) < 0) {
        return EIO;
    }
    const int result = nl_recvmsgs_default(kernel);
    // If the table changed while it was read, all its rows are there nevertheless.
    return result < 0 && result != -NLE_DUMP_INTR && error == 0 ? EIO : error;
}

// About the neighbours of a row's interface. Null when there is no memory.
Message NeighbourRequest(int type, int flags, const NeighbourRow& row)
{
    Message request(nlmsg_alloc_simple(type, flags));
    ndmsg head{};
    head.ndm_family = AF_INET;
    head.ndm_ifindex = static_cast<int>(row.interfaceIndex);
    if (request == nullptr || nlmsg_append(request.get(), &head, sizeof head, NLMSG_ALIGNTO) < 0) {
        return nullptr;
    }
    return request;
}

unsigned AskForNeighbour(
    nl_sock* kernel, int type, int flags, const NeighbourRow& row, std::vector<NeighbourRow>* rows)
{
    const Message request = NeighbourRequest(type, flags, row);
    if (request == nullptr || nla_put_u32(request.get(), NDA_DST, row.ipAddress) < 0) {
        return ENOMEM;
    }
    return Ask(kernel, request.get(), rows);
}

// The interface on which an address is reached directly, or 0.
int DirectInterface(nl_sock* kernel, std::uint32_t destination)
{
    const Address address(nl_addr_build(AF_INET, &destination, sizeof destination));
    rtnl_route* found = nullptr;
    if (address == nullptr || rtnl_route_lookup(kernel, address.get(), &found) < 0) {
        return 0;
    }
    const Route route(found);
    rtnl_nexthop* hop = rtnl_route_nexthop_n(found, 0);
    const bool direct = rtnl_route_get_type(found) == RTN_UNICAST && hop != nullptr &&
                        rtnl_route_nh_get_gateway(hop) == nullptr &&
                        rtnl_route_nh_get_via(hop) == nullptr;
    return direct ? rtnl_route_nh_get_ifindex(hop) : 0;
}

sockaddr_in UdpAddress(std::uint32_t address, std::uint16_t port)
{
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = address;
    name.sin_port = htons(port);
    return name;
}

// Makes the kernel resolve an address by sending something to it, which needs no privilege. 0, or
// the error.
unsigned SendDatagram(std::uint32_t destination, std::uint32_t source)
{
    const int descriptor = ::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (descriptor == -1) {
        return static_cast<unsigned>(errno);
    }
    const sockaddr_in from = UdpAddress(source, 0);
    const sockaddr_in to = UdpAddress(destination, DiscardPort);
    const char content = 0;
    const bool sent =
        ::bind(descriptor, reinterpret_cast<const sockaddr*>(&from), sizeof from) == 0 &&
        ::sendto(descriptor, &content, sizeof content, MSG_NOSIGNAL,
            reinterpret_cast<const sockaddr*>(&to), sizeof to) != -1;
    const unsigned error = sent ? 0 : static_cast<unsigned>(errno);
    ::close(descriptor);
    return error;
}

enum class Resolution
{
    Waiting,
    Answered,
    GivenUp
};

Resolution StateOf(const NeighbourRow& row)
{
    if (row.physicalAddressLength != 0) {
        return Resolution::Answered;
    }
    return (row.type & NUD_INCOMPLETE) != 0 ? Resolution::Waiting : Resolution::GivenUp;
}

// Fills in `row`, and tells how far the kernel has come with its address.
Resolution LookAt(nl_sock* kernel, NeighbourRow& row)
{
    std::vector<NeighbourRow> rows;
    AskForNeighbour(kernel, RTM_GETNEIGH, NLM_F_REQUEST, row, &rows);
    if (rows.empty()) { // behind an error, too
        return Resolution::GivenUp;
    }
    row = rows.front();
    return StateOf(row);
}

bool AwaitAnswer(nl_sock* kernel, NeighbourRow& row)
{
    unsigned pause = FirstPauseMs;
    Resolution resolution = LookAt(kernel, row);
    for (int pauses = 0; resolution == Resolution::Waiting && pauses < MostPauses; ++pauses) {
        Sleep(pause);
        pause = std::min(2 * pause, LongestPauseMs);
        resolution = LookAt(kernel, row);
    }
    return resolution == Resolution::Answered;
}

unsigned AskForAllNeighbours(std::vector<NeighbourRow>* rows)
{
    const NetlinkSocket kernel = ConnectToKernel();
    const Message request = NeighbourRequest(RTM_GETNEIGH, NLM_F_DUMP, NeighbourRow{});
    if (kernel == nullptr || request == nullptr) {
        return EIO;
    }
    return Ask(kernel.get(), request.get(), rows);
}

// The kernel's own entry for loopback, multicast or broadcast.
bool IsNoNeighbour(const NeighbourRow& row)
{
    return row.type == NUD_NOARP;
}

bool IsBelow(const NeighbourRow& left, const NeighbourRow& right)
{
    return std::memcmp(&left.ipAddress, &right.ipAddress, sizeof left.ipAddress) < 0;
}

} // namespace

std::vector<NeighbourRow> ReadNeighbourTable()
{
    std::vector<NeighbourRow> rows;
    if (AskForAllNeighbours(&rows) != 0) {
        return {};
    }
    rows.erase(std::remove_if(rows.begin(), rows.end(), IsNoNeighbour), rows.end());
    std::stable_sort(rows.begin(), rows.end(), IsBelow);
    return rows;
}

unsigned DeleteNeighbour(const NeighbourRow& row)
{
    const NetlinkSocket kernel = ConnectToKernel();
    return kernel == nullptr ? EIO
                             : AskForNeighbour(kernel.get(), RTM_DELNEIGH, NLM_F_ACK, row, nullptr);
}

unsigned ResolveNeighbour(std::uint32_t destination, std::uint32_t source,
    std::uint8_t* physicalAddress, std::uint32_t* length)
{
    const NetlinkSocket kernel = ConnectToKernel();
    if (kernel == nullptr) {
        return EIO;
    }
    NeighbourRow row{};
    row.ipAddress = destination;
    row.interfaceIndex = static_cast<std::uint32_t>(DirectInterface(kernel.get(), destination));
    if (row.interfaceIndex == 0) {
        return ENETUNREACH;
    }
    if (const unsigned error = SendDatagram(destination, source)) {
        return error;
    }
    if (!AwaitAnswer(kernel.get(), row)) {
        return EHOSTUNREACH;
    }
    *length = std::min(*length, row.physicalAddressLength);
    std::memcpy(physicalAddress, row.physicalAddress, *length);
    return 0;
}

std::uint32_t ParseIpv4Address(const char* text)
{
    return inet_addr(text);
}

} // namespace platform
