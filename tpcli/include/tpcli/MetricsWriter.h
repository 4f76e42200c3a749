// The traffic-policy counters of a device state in the OpenMetrics text format, the one that
// Prometheus-style collectors scrape: rule counters and named counters per policy and direction
// (input, output, cpu), named counters also per interface where the direction keeps them so,
// packets and, where the direction counts them, bytes.
//
// The values are the raw live counters, read through the same counter readers as the show
// commands. A clear never moves them: it records a snapshot that displays subtract, so the
// exported series stay monotonic, as a collector expects of a counter; a counter that the device
// recreated (a new instance id) starts again from zero, which collectors read as a reset.
#pragma once

#include "StateLoader/DeviceState.h"
#include "vellum/VellumBuffer.h"

namespace tpcli {

// The media type of what writeMetrics writes.
inline constexpr char const* kOpenMetricsContentType =
    "application/openmetrics-text; version=1.0.0; charset=utf-8";

// Writes every metric family and the closing "# EOF" line. Allocates nothing per value.
void writeMetrics(StateLoader::DeviceState const& state, vellum::VellumBuffer& out);

}  // namespace tpcli
