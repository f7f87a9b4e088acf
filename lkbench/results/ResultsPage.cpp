// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/ResultsPage.h"

#include <algorithm>

#include "lkbench/Text.h"
#include "lkbench/options/HelpText.h"
#include "lkbench/options/Roff.h"
#include "lkbench/results/Json.h"
#include "lkbench/results/RunSchema.h"
#include "lkbench/results/SeriesCsv.h"

namespace lkbench {
namespace {

// The schema's objects as lists of fields. A field is told with its type and what the schema says of it.
class SchemaText {
 public:
  explicit SchemaText(Json schema) : m_schema(std::move(schema)) {}

  std::string Root() const { return Fields("", m_schema); }
  // Those that fields refer to by name.
  std::string Parts() const {
    std::string text;
    for (const auto& [name, part] : m_schema.at("$defs").items())
      if (part.contains("properties"))
        text += SubHeading(Roff(Words(name))) + Roff(part.value("description", "")) + '\n' + Bases(part) +
                Fields("", part);
    return text;
  }

 private:
  static std::string Words(std::string name) {
    std::ranges::replace(name, '_', ' ');
    return name;
  }
  static std::string NameOf(const Json& reference) {
    const auto path = reference.at("$ref").get<std::string>();
    return path.substr(path.rfind('/') + 1);
  }
  const Json& Part(const Json& reference) const { return m_schema.at("$defs").at(NameOf(reference)); }

  std::string Bases(const Json& part) const {
    std::string text;
    for (const Json& base : part.value("allOf", Json::array()))
      text += ".PP\nAll of " + Italic(Words(NameOf(base))) + ", and:\n";
    return text;
  }
  std::string Fields(const std::string& prefix, const Json& object) const {
    std::string text;
    for (const auto& [name, field] : object.at("properties").items()) {
      text += Entry(Bold(prefix + name) + ", " + Type(field), Roff(Description(field)));
      const Json& inner = Inner(field);
      if (inner.contains("properties")) text += Bases(inner) + Fields(prefix + name + Mark(field), inner);
    }
    return text;
  }
  static std::string Mark(const Json& field) { return field.contains("items") ? "[]." : "."; }
  // The object that a field holds, or each of its list, where that has no name of its own.
  static const Json& Inner(const Json& field) {
    if (field.contains("items")) return field.at("items");
    if (!field.contains("oneOf")) return field;
    return field.at("oneOf").back();
  }
  std::string Description(const Json& field) const {
    if (field.contains("description")) return field.at("description").get<std::string>();
    return field.contains("$ref") && !Part(field).contains("properties")
               ? Part(field).value("description", "")
               : "";
  }
  std::string Type(const Json& field) const {
    if (field.contains("$ref"))
      return Part(field).contains("properties") ? Italic(Words(NameOf(field))) : Type(Part(field));
    if (field.contains("const")) return Roff(field.at("const").dump());
    if (field.contains("enum"))
      return Listed(field.at("enum"), [](const Json& each) { return Roff(each.dump()); });
    if (field.contains("oneOf"))
      return Listed(field.at("oneOf"), [&](const Json& each) { return Type(each); });
    if (field.contains("items")) return "list of " + Type(field.at("items"));
    const Json& type = field.at("type");
    if (type.is_string()) return type.get<std::string>();
    return Listed(type, [](const Json& each) { return each.get<std::string>(); });
  }
  template <class Function>
  static std::string Listed(const Json& list, Function each) {
    std::vector<std::string> parts;
    for (const Json& item : list) parts.push_back(each(item));
    return Join(parts, " or ");
  }

  Json m_schema;
};

std::string Files() {
  return Entry(Bold("run.json"), "Everything that is known of the run; its fields are below.") +
         Entry(Bold("series.csv"),
               "One line per interval of about a second and transaction, and one with the "
               "transaction total; its columns are below.") +
         Entry(
             Bold("hist/") + Italic("PHASE") + '.' + Italic("TRANSACTION") + ".response.hgrm",
             "The percentile spectrum of the response times of a transaction, or of all of them (total), in "
             "a "
             "phase, in milliseconds. With a rate there is one of the service times, too (.service.hgrm).") +
         Entry(Bold("report.html"),
               "The same as a page in one file; " + Bold("lkbench report") + " makes it anew.") +
         Entry(Bold("effective.toml"), "The job as it was read, with the place of each setting: " +
                                           Bold("lkbench run -c") + " with it repeats the run.") +
         Entry(Bold("log.txt"), "What was printed, with the time of day in UTC.");
}

std::string Columns() {
  std::string text;
  for (const SeriesColumn& column : SeriesColumns()) text += Entry(Bold(column.name), Roff(column.meaning));
  return text;
}

std::string Spectra() {
  return "A line has a value, the share of the executions that took no longer, how many these are, and 1 / "
         "(1 \\- the "
         "share): the text form of HdrHistogram, which plotters of percentile spectra read. Lines that begin "
         "with # "
         "have mean, deviation, maximum and count, and say what was measured.\n";
}

std::string ExitStatusText() {
  std::string text;
  for (const ExitStatus& status : ExitStatuses())
    text += Entry(Bold(std::to_string(status.code)), Roff(status.meaning) + '.');
  return text + ".PP\n" +
         Roff(
             "A limit of the job that was not kept, or for which nothing was measured, gives 3. Where the "
             "job limits "
             "errors of the total, that limit decides about failures, and 2 is left for lost users.") +
         '\n';
}

}  // namespace

std::string ResultsPage() {
  const SchemaText schema(Json::parse(RunSchema()));
  return PageTitle("LKBENCH-RESULTS", 5, "File Formats") + Heading("NAME") +
         "lkbench\\-results \\- what a run of lkbench leaves behind\n" + Heading("DESCRIPTION") +
         Roff(
             "Every run and workload leaves a folder: lkbench-results/TIME-VERB below the current folder, or "
             "the one "
             "that --results names, which must be new or empty. --results none leaves none. Times in files "
             "are whole "
             "nanoseconds, offsets count from the common start of the users, and times are of executions "
             "that "
             "succeeded. Response time runs from the moment that the schedule of a rate had for an "
             "execution, service "
             "time from its actual start; without a rate they are the same.") +
         '\n' + Heading("FILES") + Files() + Heading("RUN.JSON") +
         Roff("Later versions may add fields: readers skip what they do not know.") + '\n' + schema.Root() +
         schema.Parts() + Heading("SERIES.CSV") + Columns() + Heading("HGRM FILES") + Spectra() +
         Heading("EXIT STATUS") + Roff("exit_code of run.json, and the program's own:") + '\n' +
         ExitStatusText() + Heading("SEE ALSO") + Bold("lkbench") + "(1), " + Bold("lkbench-job") + "(5)\n";
}

}  // namespace lkbench
