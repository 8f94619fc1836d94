/* The network plugin: the interfaces of /sys/class/net with address, speed, MTU, state and
 * driver, their IPv4 and IPv6 addresses, and in the second pass the association of each
 * interface with the computer system and of each address with its interface. */
#include "zelplugin.h"

#include <arpa/inet.h>
#include <dirent.h>
#include <ifaddrs.h>
#include <limits.h>
#include <net/if.h>
#include <netinet/in.h>
#include <unistd.h>

static int ReadNetFile(const char* adapter, const char* file, char* value, size_t size) {
  char path[PATH_MAX];
  snprintf(path, sizeof path, "/sys/class/net/%s/%s", adapter, file);
  return ZelPluginReadLine(path, value, size);
}

static zelStatusCode AddAdapter(void* context, const char* adapter) {
  zelIOHandle* io = (zelIOHandle*)context;
  char value[256];
  char path[PATH_MAX];
  char target[PATH_MAX];
  zelStatusCode status = ZelPluginOpenInstance(io, "KAPLA_NetworkAdapter", "DeviceID", adapter);
  if (status != zelStatusOK)
    return status;
  zelAddStringProperty(io, "Name", adapter);
  if (ReadNetFile(adapter, "address", value, sizeof value))
    zelAddStringProperty(io, "PermanentAddress", value);
  /* Mb/s; unreadable or -1 while the link is down or for virtual devices: left NULL. */
  if (ReadNetFile(adapter, "speed", value, sizeof value) && atol(value) > 0)
    zelAddUint64Property(io, "Speed", (uint64_t)atol(value) * 1000000u);
  if (ReadNetFile(adapter, "mtu", value, sizeof value))
    zelAddUint32Property(io, "MTU", (uint32_t)strtoul(value, NULL, 10));
  if (ReadNetFile(adapter, "operstate", value, sizeof value))
    zelAddStringProperty(io, "LinkState", value);
  snprintf(path, sizeof path, "/sys/class/net/%s/device/driver", adapter);
  if (ZelPluginLinkName(path, target, sizeof target))
    zelAddStringProperty(io, "Driver", target);
  return ZelPluginKeepPart(adapter);
}

static zelStatusCode AddAdapters(zelIOHandle* io) {
  return ZelPluginEachEntry("/sys/class/net", "", AddAdapter, io);
}

/* The kernel's own scope for IPv6 (/proc/net/if_inet6); for IPv4, which getifaddrs gives
 * without one, the scope the kernel assigns by default to such an address. */
static const char* Scope6(unsigned long scope) {
  switch (scope & 0xf0) {
  case 0x00:
    return "global";
  case 0x10:
    return "host";
  case 0x20:
    return "link";
  case 0x40:
    return "site";
  }
  return NULL;
}

static const char* Scope4(const struct in_addr* address) {
  uint32_t host = ntohl(address->s_addr);
  if ((host >> 24) == 127)
    return "host";
  if ((host >> 16) == 0xa9fe) /* 169.254/16 */
    return "link";
  return "global";
}

static zelStatusCode AddEndpoint(zelIOHandle* io, const char* interfaceName, int family,
                                 const void* address, unsigned prefix, const char* scope) {
  char text[INET6_ADDRSTRLEN];
  char name[IF_NAMESIZE + INET6_ADDRSTRLEN + 16];
  zelStatusCode status;
  if (!inet_ntop(family, address, text, sizeof text))
    return zelStatusOK;
  snprintf(name, sizeof name, "%s/%s/%u", interfaceName, text, prefix);
  status = ZelPluginOpenInstance(io, "KAPLA_IPProtocolEndpoint", "Name", name);
  if (status != zelStatusOK)
    return status;
  zelAddStringProperty(io, "InterfaceName", interfaceName);
  zelAddStringProperty(io, "Address", text);
  zelAddUint8Property(io, "PrefixLength", (uint8_t)prefix);
  zelAddUint16Property(io, "ProtocolIFType", family == AF_INET ? 4096 : 4097);
  if (scope)
    zelAddStringProperty(io, "Scope", scope);
  /* Kept for the second pass: the interface with the endpoint's key. */
  return ZelPluginNamesAddPair(&gZelPluginPairs, interfaceName, name) ? zelStatusOK
                                                                      : zelStatusOutOfMemory;
}

/* "fd000000000000000000000000000002 04 40 00 82 eth0": address, interface index, prefix
 * length, scope and flags in hex, interface. */
static zelStatusCode AddIPv6Endpoints(zelIOHandle* io) {
  char line[256];
  zelStatusCode status = zelStatusOK;
  FILE* file = ZelPluginFopen("/proc/net/if_inet6");
  if (!file)
    return zelStatusOK; /* IPv6 disabled */
  while (status == zelStatusOK && fgets(line, sizeof line, file)) {
    char hex[33];
    char interfaceName[IF_NAMESIZE + 1];
    unsigned long index, prefix, scope, flags;
    struct in6_addr address;
    int i;
    if (sscanf(line, "%32s %lx %lx %lx %lx %16s", hex, &index, &prefix, &scope, &flags,
               interfaceName) != 6 || strlen(hex) != 32)
      continue;
    for (i = 0; i < 16; ++i) {
      char pair[3] = {hex[2 * i], hex[2 * i + 1], '\0'};
      address.s6_addr[i] = (uint8_t)strtoul(pair, NULL, 16);
    }
    status = AddEndpoint(io, interfaceName, AF_INET6, &address, (unsigned)prefix, Scope6(scope));
  }
  fclose(file);
  return status;
}

/* No file lists the IPv4 addresses with their prefixes: they come from the kernel of this
 * machine, and under another root there are none rather than this machine's. */
static zelStatusCode AddIPv4Endpoints(zelIOHandle* io) {
  struct ifaddrs* list = NULL;
  struct ifaddrs* entry;
  zelStatusCode status = zelStatusOK;
  if (strcmp(ZelPluginRoot(), "/") != 0 || getifaddrs(&list) != 0)
    return zelStatusOK;
  for (entry = list; status == zelStatusOK && entry; entry = entry->ifa_next) {
    char interfaceName[IF_NAMESIZE + 1];
    const struct in_addr* address;
    unsigned prefix = 0;
    if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET)
      continue;
    address = &((const struct sockaddr_in*)(const void*)entry->ifa_addr)->sin_addr;
    if (entry->ifa_netmask)
      prefix = (unsigned)__builtin_popcount(
          ((const struct sockaddr_in*)(const void*)entry->ifa_netmask)->sin_addr.s_addr);
    /* An alias label such as "eth0:1" names its interface before the colon. */
    snprintf(interfaceName, sizeof interfaceName, "%.*s", (int)strcspn(entry->ifa_name, ":"),
             entry->ifa_name);
    status = AddEndpoint(io, interfaceName, AF_INET, address, prefix, Scope4(address));
  }
  freeifaddrs(list);
  return status;
}

/* An address with its interface, when that interface was collected. */
static zelStatusCode AddImplementation(zelIOHandle* io, const char* adapter,
                                       const char* endpoint) {
  if (!ZelPluginNamesHas(&gZelPluginParts, adapter))
    return zelStatusOK;
  return ZelPluginAddDependency(io, "KAPLA_DeviceSAPImplementation", "KAPLA_NetworkAdapter",
                                "DeviceID", adapter, "KAPLA_IPProtocolEndpoint", "Name",
                                endpoint);
}

static zelStatusCode AddAddresses(zelIOHandle* io, const char** classNames, int classCount) {
  zelStatusCode status = zelStatusOK;
  if (ZelPluginAsked(classNames, classCount, "KAPLA_IPProtocolEndpoint")) {
    ZelPluginNamesClear(&gZelPluginPairs);
    status = AddIPv6Endpoints(io);
    if (status == zelStatusOK)
      status = AddIPv4Endpoints(io);
  }
  if (status == zelStatusOK &&
      ZelPluginAsked(classNames, classCount, "KAPLA_DeviceSAPImplementation"))
    status = ZelPluginEachPair(io, AddImplementation);
  return status;
}

ZEL_RELATED_PARTS_PLUGIN("Network", "KAPLA_NetworkAdapter", "KAPLA_SystemNetworkAdapter",
                         "DeviceID", AddAdapters, AddAddresses)
