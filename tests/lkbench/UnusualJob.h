// SPDX-License-Identifier: Apache-2.0
// The text of a job in which every key has a value that is not its default.
#pragma once

namespace lkbench {

inline constexpr const char* kUnusualJob = R"toml(
target = "local:/a b/\"c\"\\d"
durability = "relaxed"
buffer_pool = "64MiB"
log_size = "1.5GiB"
password = "env:PW"
users = 8
duration = "1500ms"
scale = 2.25
tables = 7
first_table = 3
min_columns = 1
max_columns = 4
column_types = [ { type = "NUMBER(5)", weight = 2, nullable = true }, "DATE:3" ]
distribution = "poisson"
use_backup = true
rows_per_commit = 100
mix = { insert = 1, delete = 2 }
schema_seed = 9
run_seed = 11
limits = { "insert.p99" = "<20ms", errors = "<1%" }
results = "/tmp/a"
count = 5000
warm_up = "1200ms"
ramp = 2
think = "10ms:50ms"
rate = 0.5
arrival = "poisson"
commit_every = 20
phase = [{ name = "base" }, { name = "burst", users = 64, duration = "1m" }]
on_disconnect = "stop"
reconnect_pause = "200ms"
reconnect_limit = "2s"
call_timeout = "30s"
break_after = "1s"
give_up_after = "3s"
log_level = "debug"
format = "json"
metrics = 9180
json = "/tmp/a.json"
plugin = "/lib/p.so"
oci = "/lib/o.so"
)toml";

}  // namespace lkbench
