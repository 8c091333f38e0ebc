// PipeWireGraph: a snapshot of a server's sinks and ports, and the decisions that follow from it.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/audio_system.h"
#include "platform/duplex_audio.h"

namespace brindlehum {

struct PipeWireSink {
    uint32_t id = 0;  // global id of the node
    std::string nodeName;
    std::string description;  // empty when the node has none
};

// A planar float port ("DSP port") of any node.
struct PipeWirePort {
    uint32_t id = 0;      // index among the ports of its node and direction
    uint32_t node = 0;    // global id of its node
    uint32_t number = 0;  // among the ports of its node and direction
    bool isInput = false;
    std::string position;  // "FL", "AUX0"; empty when the port states none
};

// What is known of a node for the question where its sound goes.
struct PipeWireNode {
    uint32_t client = 0;    // global id of the program that made it; 0 when it isn't stated
    bool isDevice = false;  // a sink or a source, which passes nothing on to another node by itself
};

struct PipeWireGraph {
    std::vector<PipeWireSink> sinks;    // as the server announced them
    std::vector<PipeWireSink> sources;  // capture devices, likewise
    std::map<uint32_t, PipeWireNode> nodes;
    std::map<uint32_t, std::pair<uint32_t, uint32_t>> links;  // from node to node
    uint32_t ownClient = 0;                                   // global id of this connection; 0 while unknown
    std::map<uint32_t, PipeWirePort> ports;
    std::string defaultSinkName;  // empty while the server states none
    double statedRate = 0;        // Hz; 0 while unknown
    double forcedRate = 0;        // Hz; 0 when none is forced
    // Sinks that refused our links; each makes one attempt to open it fail.
    std::set<uint32_t> refused;
    // Rates seen while the graph drove a sink; they take precedence over the stated rate.
    std::map<uint32_t, double> observedRates;

    // A node's ports of one direction, in channel order; their global ids.
    std::vector<PipeWirePort> sortedPorts(uint32_t node, bool inputs) const;
    std::vector<uint32_t> portsOf(uint32_t node, bool inputs) const;
    // Sinks that have input ports.
    std::vector<AudioOutputDevice> outputs() const;
    // What can be listened to: sources, and what sinks are given.
    std::vector<AudioInputDevice> inputs() const;
    // Whether sound of one node comes to the other: along links, through sinks to their monitors, and through programs
    // with several nodes, which may pass it on. Not through ourselves.
    bool reaches(uint32_t from, uint32_t to) const;
    // The stated default, or the first output when the server states none or the stated one can't be played on.
    std::optional<uint32_t> defaultOutput() const;
    // The rate in Hz that a stream to this sink will probably have.
    double rateFor(uint32_t sink) const;

    void remove(uint32_t globalId);
};

}  // namespace brindlehum
