// What gRPC itself costs: a server that sends frames made beforehand, and echoes what it is sent.
#pragma once

#include <string>

namespace Bench {

// Serves on loopback until SIGTERM, and prints "serving HOST:PORT". A stream of `/bare/Frames` gets the
// messages of a file at its first message and ends; one of `/bare/Echo` gets back what it sends.
// The file has each message behind its size, 8 bytes in the machine's order.
int serveBare(const std::string& frames);

}  // namespace Bench
