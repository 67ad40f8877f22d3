// Many processes that report into one log at a time: every line is there, whole, once.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/scratch_folder.h"

namespace {

TEST(LogStress, ProcessesLoseAndTearNoLine) {
  constexpr int processes = 4, reports = 40;
  const std::string program = std::filesystem::absolute(KX_LOG_WRITER).make_preferred().string();
  const kxtest::ScratchFolder folder;
  std::vector<std::thread> runs;
  std::vector<int> results(processes, -1);
  runs.reserve(processes);
  for (int i = 0; i < processes; ++i)
    runs.emplace_back([&, i] {
      const std::string command = '"' + program + "\" " + std::to_string(1000 * i) + ' ' + std::to_string(reports);
      results[static_cast<std::size_t>(i)] =
          std::system(command.c_str());  // NOLINT(cert-env33-c): the program is our own
    });
  for (std::thread& run : runs) run.join();
  EXPECT_EQ(std::vector<int>(processes, 0), results);

  std::istringstream log(kxtest::readFile("ERRORLOG.TXT"));
  std::multiset<int> numbers;
  for (std::string line; std::getline(log, line);) {
    const std::size_t number = line.find("(Zeile ");
    ASSERT_NE(std::string::npos, number) << line;
    EXPECT_TRUE(line[0] == '[' && line[9] == ']' && line.ends_with(" in Datei \"log_writer.c\")\r")) << line;
    numbers.insert(std::stoi(line.substr(number + 7)));
  }
  EXPECT_EQ(static_cast<std::size_t>(processes * reports), numbers.size());
  EXPECT_EQ(numbers.size(), std::set<int>(numbers.begin(), numbers.end()).size());
}

}  // namespace
