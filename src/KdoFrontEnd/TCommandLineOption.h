// The options of a command line: an argument of at least two characters
// that starts with '-'. "-name=value" has a name and a value, "-name" a name
// only. Other arguments are skipped.
#pragma once

#include <string>
#include <vector>

class TCommandLineOption {
 public:
  TCommandLineOption(int argc, const char* const* argv);
  unsigned size() const { return static_cast<unsigned>(options_.size()); }
  const std::string& option(unsigned i) const { return options_.at(i).first; }
  const std::string& value(unsigned i) const { return options_.at(i).second; }
  bool isOption(const char* name) const;
  // The value of the first option of that name, "" if none.
  std::string value(const char* name) const;

 private:
  std::vector<std::pair<std::string, std::string>> options_;
};
