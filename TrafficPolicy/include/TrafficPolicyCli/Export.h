// The library hides every symbol but the few that form its surface: the factories.
#pragma once

#define TRAFFIC_POLICY_CLI_EXPORT __attribute__((visibility("default")))
