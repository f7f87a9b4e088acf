# SPDX-License-Identifier: Apache-2.0
# pages.sh LKBENCH FOLDER: writes the manual pages, the completions and an example job.
set -eu
"$1" man lkbench | gzip -9n >"$2/lkbench.1.gz"
"$1" man lkbench-job | gzip -9n >"$2/lkbench-job.5.gz"
"$1" man lkbench-results | gzip -9n >"$2/lkbench-results.5.gz"
"$1" completion bash >"$2/lkbench"
"$1" completion zsh >"$2/_lkbench"
"$1" init -o - >"$2/job-example.toml"
