// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/PhaseKeys.h"

#include <gmock/gmock.h>

#include "Told.h"
#include "lkbench/JobKeys.h"

namespace lkbench {
namespace {

using namespace std::chrono_literals;

// As a flag of the command line does.
void Set(Job& job, const std::string& key, const std::string& text) {
  JobValue value{key, "--" + key, text, true};
  if (key == "phase") value.value = JobValue::List{JobValue{key, "--phase", text, true}};
  SetJobKey(job, *FindJobKey(key), value);
}

std::string Refusal(const std::string& text) {
  return RefusalOf([&] { PhasesOf(ReadJob(text)); });
}

TEST(PhaseKeys, AJobWithoutPhasesIsOnePhase) {
  const auto phases = PhasesOf(ReadJob("users = 3\nrate = 0.5"));
  ASSERT_EQ(phases.size(), 1u);
  EXPECT_EQ(phases[0].name, "workload");
  EXPECT_EQ(phases[0].users, 3);
  EXPECT_EQ(phases[0].rate, 0.5);
}

TEST(PhaseKeys, WhatAPhaseDoesNotSayIsTheJobs) {
  const auto phases = PhasesOf(ReadJob(R"(
users = 8
think = "1ms:2ms"
[[phase]]
rate = 100
[[phase]]
name = "burst"
users = 64
mix = { insert = 1 }
)"));
  ASSERT_EQ(phases.size(), 2u);
  EXPECT_EQ(phases[0].name, "phase 1");
  EXPECT_EQ(phases[0].users, 8);
  EXPECT_EQ(phases[0].rate, 100);
  EXPECT_EQ(phases[1].name, "burst");
  EXPECT_EQ(phases[1].users, 64);
  EXPECT_EQ(phases[1].rate, 0);
  EXPECT_EQ(phases[1].think_max, 2ms);
  EXPECT_EQ(phases[1].mix.update, 0);
}

TEST(PhaseKeys, AFlagHoldsForAllPhasesOfTheFile) {
  Job job = ReadJob("[[phase]]\nusers = 64\nduration = \"5m\"\n[[phase]]\nusers = 32");
  Set(job, "users", "4");
  for (const Phase& phase : PhasesOf(job)) EXPECT_EQ(phase.users, 4);
  EXPECT_EQ(PhasesOf(job)[0].duration, 5min);
}

TEST(PhaseKeys, APhaseMayBeAFlagWithItsKeysAsWords) {
  Job job = ReadJob("");
  Set(job, "users", "4");
  Set(job, "phase", "name=burst users=64 mix=insert=3,delete=1 duration=1m");
  const auto phases = PhasesOf(job);
  ASSERT_EQ(phases.size(), 1u);
  EXPECT_EQ(phases[0].name, "burst");
  EXPECT_EQ(phases[0].users, 64);
  EXPECT_EQ(phases[0].mix.insert, 3);
  EXPECT_EQ(phases[0].duration, 1min);
}

TEST(PhaseKeys, ACountAloneEndsAPhase) {
  EXPECT_EQ(PhasesOf(ReadJob("count = 100"))[0].duration, 0s);
  EXPECT_EQ(PhasesOf(ReadJob("count = 100\nduration = \"1m\""))[0].duration, 1min);
  EXPECT_EQ(PhasesOf(ReadJob("[[phase]]\ncount = 100"))[0].duration, 0s);
  EXPECT_EQ(PhasesOf(ReadJob("duration = \"1m\"\n[[phase]]\ncount = 100"))[0].duration, 1min);
}

TEST(PhaseKeys, PhasesWrittenOutMeanTheSameWhenTheyAreReadAgain) {
  const Job job = ReadJob("rate = 12.5\n[[phase]]\ncount = 7\n[[phase]]\nthink = \"1ms:20ms\"\nramp = 3");
  std::string text;
  for (const JobKey& key : JobKeys()) {
    const std::string value = key.type.toml(job);
    if (!value.empty()) text += key.name + " = " + value + '\n';
  }
  EXPECT_EQ(PhasesOf(ReadJob(text)), PhasesOf(job)) << text;
}

TEST(PhaseKeys, WhatIsWrongInAPhaseIsNamedWithItsLine) {
  EXPECT_EQ(Refusal("[[phase]]\nusrs = 3"),
            "job.toml:2: a phase has no key \"usrs\": did you mean \"users\"?");
  EXPECT_EQ(Refusal("[[phase]]\nusers = 0"),
            "job.toml:2: users cannot be 0: a whole number from 1 to 1000 is needed");
  EXPECT_EQ(Refusal("phase = 3"),
            "job.toml:1: phase cannot be 3: a list of tables is needed: begin each phase with [[phase]]");
  EXPECT_EQ(Refusal("rate = 0"),
            "job.toml:1: rate cannot be 0: executions per second are needed, above 0 and up to 1000000, or "
            "unlimited");
  EXPECT_EQ(
      Refusal("think = \"5ms:1ms\""),
      "job.toml:1: think cannot be \"5ms:1ms\": the form is MIN:MAX, as 10ms:50ms, the smaller time first");
}

TEST(PhaseKeys, SettingsOfAPhaseThatContradictEachOtherAreRefused) {
  EXPECT_EQ(Refusal("duration = 0"),
            "job.toml:1: workload has neither a duration nor a count: it would never end");
  EXPECT_EQ(Refusal("duration = 1\n[[phase]]\nname = \"a\"\nramp = 3"),
            "job.toml:2: the ramp of a is 3s but it ends after 1s: not all users would start");
  EXPECT_EQ(
      Refusal("duration = 5\nwarm_up = 5"),
      "job.toml:2: the warm-up of workload is 5s but it is measured for 5s: the duration, which comes after "
      "it, must be longer");
  EXPECT_EQ(Refusal("count = 5\nwarm_up = 5"), "not refused");
  EXPECT_EQ(Refusal("users = 2\nthink = \"1s:2s\"\nrate = 3"),
            "job.toml:3: the rate of workload is 3 per s but each of its 2 users pauses for at least 1s: "
            "more users, "
            "a shorter think or a lower rate is needed");
  EXPECT_EQ(Refusal("users = 2\nthink = \"1s:2s\"\nrate = 2"), "not refused");
}

TEST(PhaseKeys, EveryPhaseHasANameOfItsOwn) {
  EXPECT_EQ(Refusal("[[phase]]\nname = \"a\"\n[[phase]]\nname = \"b\"\n[[phase]]\nname = \"a\""),
            "job.toml:5: two phases are called a, the other at job.toml:1: each needs a name of its own");
  EXPECT_EQ(
      Refusal("[[phase]]\nname = \"phase 2\"\n[[phase]]"),
      "job.toml:3: two phases are called phase 2, the other at job.toml:1: each needs a name of its own");
}

TEST(PhaseKeys, PoissonArrivalsNeedARate) {
  EXPECT_EQ(Refusal("arrival = \"poisson\""),
            "job.toml:1: the arrival of workload is poisson but it has no rate: give it one, as 100");
  EXPECT_EQ(Refusal("rate = 5\n[[phase]]\nname = \"a\"\nrate = \"unlimited\"\narrival = \"poisson\""),
            "job.toml:2: the arrival of a is poisson but it has no rate: give it one, as 100");
  EXPECT_EQ(Refusal("arrival = \"poisson\"\n[[phase]]\nduration = 5"),
            "job.toml:1: arrival is poisson but no phase has a rate: give one a rate");
}

TEST(PhaseKeys, APhaseWithoutARateInheritsNoArrivals) {
  const auto phases =
      PhasesOf(ReadJob("arrival = \"poisson\"\n[[phase]]\nrate = 5\n[[phase]]\nduration = 5"));
  EXPECT_EQ(phases[0].arrival, Arrival::kPoisson);
  EXPECT_EQ(phases[1].arrival, Arrival::kFixed);
}

}  // namespace
}  // namespace lkbench
