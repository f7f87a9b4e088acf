// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Verbs.h"

#include <algorithm>

#include "lkbench/options/TextVerbs.h"

namespace lkbench {
namespace {

const std::vector<VerbInfo> kVerbs = {
    {.name = "init",
     .bit = kInitVerb,
     .help = "write a commented job file to start from",
     .more = "A file that is there already is left alone.",
     .examples = {{"lkbench init", "job.toml, for a short first run"},
                  {"lkbench init --template oltp -o oltp.toml", "a job of many users"},
                  {"lkbench init --template wide -o -", "to look at"}}},
    {.name = "run",
     .bit = kRunVerb,
     .help = "create, load, workload and refresh, then a summary",
     .more =
         "Creates the tables where there are none, loads them to the scale, drives the workload, and puts "
         "the tables back to where they were. Tables that are there already are used as they are.",
     .examples = {{"lkbench run", "ten seconds on a private database"},
                  {"lkbench run --users 8 --duration 1m --scale 10", "more users, longer, on more rows"},
                  {"lkbench run -c job.toml", "what a job file says"},
                  {"lkbench run --target mariadb://bench@db1/bench --password env:DB_PASSWORD",
                   "a MariaDB server of yours"}}},
    {.name = "create",
     .bit = kCreateVerb,
     .help = "create the tables, the properties table and the sequence",
     .more = "The same schema seed and the same keys give the same tables everywhere.",
     .examples = {{"lkbench create --tables 20", "twenty tables of drawn shapes"},
                  {"lkbench create --first-table 21 --tables 30", "ten more beside them"},
                  {"lkbench create --column-types 'NUMBER(10,2):3' --column-types VARCHAR2(40):1:null",
                   "three numbers to one text that may hold NULL"}}},
    {.name = "ddl",
     .bit = kDdlVerb,
     .help = "print the statements that create executes, without a database",
     .more = "The text is what the plug-in makes of the job, before any database sees it; with the same "
             "schema seed "
             "it is the same everywhere.",
     .examples = {{"lkbench ddl --tables 1", "the statements for one table"},
                  {"lkbench ddl -c job.toml >schema.sql", "those of a job, into a file"}}},
    {.name = "load",
     .bit = kLoadVerb,
     .help = "load the tables to the scale",
     .more =
         "Adds rows up to the scale by array inserts, dealt out among the users. A load that was broken off "
         "is gone on with; rows that are there stay.",
     .examples = {{"lkbench load --scale 100 --users 4", "100,000 rows per table by four users"},
                  {"lkbench load --scale 100 --use-backup", "through backup tables"}}},
    {.name = "workload",
     .bit = kWorkloadVerb,
     .help = "drive inserts, updates and deletes for the duration",
     .more = "Every user repeats transactions drawn by the weights of the mix. The tables must be loaded.",
     .examples = {{"lkbench workload --users 16 --duration 5m", "sixteen users for five minutes"},
                  {"lkbench workload --mix insert=1", "inserts only"},
                  {"lkbench workload --run-seed 7", "the transactions of an earlier run in its order"}}},
    {.name = "refresh",
     .bit = kRefreshVerb,
     .help = "remove the rows above the scale, make the sequence anew",
     .more = "Brings the tables back to their loaded scale, or to a smaller one.",
     .examples = {{"lkbench refresh", "back to what was loaded"},
                  {"lkbench refresh --scale 1", "back to 1000 rows per table"}}},
    {.name = "drop",
     .bit = kDropVerb,
     .help = "drop everything that create made",
     .examples = {{"lkbench drop", "all of it"}, {"lkbench drop --first-table 21", "the tables from 21 on"}}},
    {.name = "list",
     .bit = kListVerb,
     .help = "list the transactions of the plug-in",
     .examples = {{"lkbench list --plugin ./libmine.so", "of a plug-in of yours"}}},
    {.name = "check",
     .bit = kCheckVerb,
     .help = "show what is loaded from where, and whether it connects",
     .examples = {{"lkbench check --target oracle://bench@//db2:1521/orclpdb --password prompt",
                   "whether an Oracle database answers"}}},
    {.name = "report",
     .bit = kReportVerb,
     .help = "make the page of a run anew from its run.json",
     .arguments = "DIR",
     .fewest = 1,
     .most = 1,
     .more = "Writes report.html into the folder that a run has left. Nothing is connected to.",
     .examples = {{"lkbench report lkbench-results/2026-01-02T03-04-05Z-run", "after an update of lkbench"}}},
    {.name = "compare",
     .bit = kCompareVerb,
     .help = "tell what differs between runs, and whether by more than noise",
     .arguments = "A B...",
     .fewest = 2,
     .most = 20,
     .more = "Compares the results of runs with those of the first, A. A difference counts as one when it is "
             "larger than the seconds of the runs vary themselves; docs/explanation/numbers.md says how.",
     .examples = {{"lkbench compare before after", "two folders of results"},
                  {"lkbench compare before after --html compare.html", "as a page"},
                  {"lkbench compare before after --fail-over 5%",
                   "for a script: 3 when anything got worse by more"}}},
    {.name = "completion",
     .bit = kCompletionVerb,
     .help = "print the completion script of a shell",
     .arguments = "bash|zsh",
     .fewest = 1,
     .most = 1,
     .examples = {{"source <(lkbench completion bash)", "completion in this bash"},
                  {"lkbench completion zsh >~/.zfunc/_lkbench", "for zsh, where fpath has ~/.zfunc"}}},
    {.name = "man",
     .bit = kManVerb,
     .help = "print a manual page",
     .arguments = "lkbench|lkbench-job|lkbench-results",
     .fewest = 1,
     .most = 1,
     .examples = {{"lkbench man lkbench-job | man -l -", "all keys of a job file"}}},
    {.name = "help",
     .bit = kHelpVerb,
     .help = "show this help, or that of a verb",
     .arguments = "[VERB]",
     .most = 1,
     .examples = {{"lkbench help run", "what run does, with its flags"}}},
};

}  // namespace

std::span<const VerbInfo> AllVerbs() { return kVerbs; }

const VerbInfo* FindVerb(const std::string& name) {
  const auto found = std::ranges::find(kVerbs, name, &VerbInfo::name);
  return found == kVerbs.end() ? nullptr : &*found;
}

std::vector<std::string> VerbNames() {
  std::vector<std::string> names;
  names.reserve(std::size(kVerbs));
  for (const VerbInfo& verb : kVerbs) names.push_back(verb.name);
  return names;
}

}  // namespace lkbench
