// Command lines written as one string in test tables, split into the words a shell would pass.
// `""` stands for an empty word.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace tpcli_test {

inline std::vector<std::string> wordsOf(std::string const& line) {
   std::vector<std::string> words;
   std::istringstream stream(line);
   for (std::string word; stream >> word;) {
      words.push_back(word == "\"\"" ? std::string() : word);
   }
   return words;
}

}  // namespace tpcli_test
