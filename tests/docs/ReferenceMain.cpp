// SPDX-License-Identifier: Apache-2.0
// docs_reference lkbench|job|columns: prints a page of docs/reference, or the columns of series.csv.
#include <iostream>
#include <map>

#include "Reference.h"

int main(int count, char** words) {
  const std::map<std::string, std::string (*)()> texts = {{"lkbench", lkbench::VerbReference},
                                                          {"job", lkbench::JobReference},
                                                          {"columns", lkbench::SeriesColumnNames}};
  const auto found = texts.find(count == 2 ? words[1] : "");
  if (found == texts.end()) {
    std::cerr << "usage: docs_reference lkbench|job|columns\n";
    return 1;
  }
  std::cout << found->second();
  return 0;
}
