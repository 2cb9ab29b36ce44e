// The steps that each mode of the library takes.
#pragma once

#include "Explained.h"

namespace zoomreplay {

// The reason for an answer, and what brought the override.
void giveReasonOfInstantP1(Told const& told, P1Question const& question, Explained& explained);
void giveReasonOfByRequestP2(Told const& told, P2Question const& question, Explained& explained);
void giveReasonOfExternalP1(Told const& told, P1Question const& question, Explained& explained);
void giveReasonOfExternalP2(Told const& told, P2Question const& question, Explained& explained);

// The crops of an overriding answer for a request.
void addInstantP1(Told& told, uint32_t requestNo, Explained& explained);
void addByRequestP2(Told& told, uint32_t requestNo, Explained& explained);
void addExternalP1(Told& told, uint32_t requestNo, Explained& explained);
void addExternalP2(Told& told, uint32_t requestNo, Explained& explained);

/// The mode that a sensor streams in; empty when it does not, or when nothing is known of it.
std::optional<uint32_t> streamingMode(Told::Deposit const& deposit, uint32_t sensorId);

}  // namespace zoomreplay
