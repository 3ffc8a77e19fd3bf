// What compiling and matching the filters takes: every allocation of libc's matcher is counted.
#include <gtest/gtest.h>
#include <malloc.h>
#include <regex.h>
#include <stdlib.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/mkstore/filter_document.h"
#include "tests/mkstore/filter_reader.h"

extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
void __libc_free(void *block);
}

namespace {

constexpr size_t kBudget = 128 * 1024;
constexpr size_t kBlockOverhead = sizeof(size_t);

bool counting = false;
size_t live = 0;
size_t peak = 0;

void count_in(void *block) {
  if (counting && block != nullptr) {
    live += malloc_usable_size(block) + kBlockOverhead;
    peak = std::max(peak, live);
  }
}

void count_out(void *block) {
  if (counting && block != nullptr) {
    live -= malloc_usable_size(block) + kBlockOverhead;
  }
}

}  // namespace

extern "C" {
void *malloc(size_t size) {
  void *block = __libc_malloc(size);
  count_in(block);
  return block;
}
void *calloc(size_t count, size_t size) {
  void *block = __libc_calloc(count, size);
  count_in(block);
  return block;
}
void *realloc(void *old, size_t size) {
  count_out(old);
  void *block = __libc_realloc(old, size);
  count_in(block);
  return block;
}
void free(void *block) {
  count_out(block);
  __libc_free(block);
}
}

namespace {

// The most that one match takes, from regcomp to regfree.
size_t memory_of(const std::string &filter, const std::string &value) {
  regex_t expression;
  live = 0;
  peak = 0;
  counting = true;
  const int code = regcomp(&expression, filter.c_str(), REG_EXTENDED | REG_NOSUB);
  if (code == 0) {
    (void)regexec(&expression, value.c_str(), 0, nullptr, 0);  // Either answer is fine here.
    regfree(&expression);
  }
  counting = false;
  EXPECT_EQ(code, 0) << filter;
  EXPECT_EQ(live, 0u) << filter;
  return peak;
}

// Makes texts that an expression matches, by reading the expression. Knows what filters use:
// groups, alternatives, sets, counts and escapes.
class TextMaker {
 public:
  TextMaker(const std::string &filter, std::mt19937 &random)
      : text_(filter.substr(1, filter.size() - 2)), random_(random) {}

  std::string make() {
    at_ = 0;
    return alternatives(true);
  }

 private:
  size_t below(size_t limit) { return random_() % limit; }

  // Reads all alternatives, and returns the text of one.
  std::string alternatives(bool wanted) {
    std::vector<size_t> starts = {at_};
    (void)sequence(false);
    while (at_ < text_.size() && text_[at_] == '|') {
      starts.push_back(++at_);
      (void)sequence(false);
    }
    const size_t end = at_;
    if (!wanted) {
      return {};
    }
    at_ = starts[below(starts.size())];
    std::string made = sequence(true);
    at_ = end;
    return made;
  }

  std::string sequence(bool wanted) {
    std::string made;
    while (at_ < text_.size() && text_[at_] != '|' && text_[at_] != ')') {
      const size_t start = at_;
      (void)atom(false);
      const size_t behind = at_;
      const size_t times = repetitions();
      const size_t end = at_;
      for (size_t i = 0; wanted && i < times && made.size() <= 255; ++i) {
        at_ = start;
        made += atom(true);
        EXPECT_EQ(at_, behind) << text_;
      }
      at_ = end;
    }
    return made;
  }

  std::string atom(bool wanted) {
    const char c = text_[at_++];
    if (c == '(') {
      std::string made = alternatives(wanted);
      EXPECT_EQ(text_[at_++], ')') << text_;
      return made;
    }
    if (c == '[') {
      return std::string(1, set());
    }
    return std::string(1, c == '\\' ? text_[at_++] : c);
  }

  char set() {
    const bool negated = text_[at_] == '^';
    at_ += negated ? 1 : 0;
    std::set<char> members;
    for (bool first = true; first || text_[at_] != ']'; first = false) {
      if (text_.compare(at_, 9, "[:cntrl:]") == 0) {
        at_ += 9;
        continue;
      }
      const char low = text_[at_++];
      char high = low;
      if (text_[at_] == '-' && text_[at_ + 1] != ']') {
        high = text_[at_ + 1];
        at_ += 2;
      }
      for (int c = low; c <= high; ++c) {
        members.insert(static_cast<char>(c));
      }
    }
    ++at_;
    std::vector<char> choice;
    for (char c = ' '; c <= '~'; ++c) {
      if ((members.count(c) != 0) != negated) {
        choice.push_back(c);
      }
    }
    return choice[below(choice.size())];
  }

  size_t number() {
    size_t value = 0;
    while (text_[at_] >= '0' && text_[at_] <= '9') {
      value = value * 10 + static_cast<size_t>(text_[at_++] - '0');
    }
    return value;
  }

  // A count within the limits behind an atom, mostly the highest.
  size_t repetitions() {
    constexpr size_t kMany = 40;
    size_t least = 1;
    size_t most = 1;
    const char c = at_ < text_.size() ? text_[at_] : '\0';
    if (c == '*' || c == '+' || c == '?') {
      ++at_;
      least = c == '+' ? 1 : 0;
      most = c == '?' ? 1 : below(2) == 0 ? 1 : kMany;
    } else if (c == '{') {
      ++at_;
      least = most = number();
      if (text_[at_] == ',') {
        ++at_;
        most = text_[at_] == '}' ? least + kMany : number();
      }
      EXPECT_EQ(text_[at_++], '}') << text_;
      EXPECT_LE(most, 255u) << text_;
    }
    return below(4) == 0 ? least + below(most - least + 1) : most;
  }

  std::string text_;
  std::mt19937 &random_;
  size_t at_ = 0;
};

// Values of up to 255 characters that lead a filter through many of its states.
std::set<std::string> long_values(const std::string &filter, std::mt19937 &random) {
  constexpr int kTexts = 40;
  constexpr size_t kLongest = 255;
  std::set<std::string> values;
  for (const char c : std::string("a0 1Zf,:-.")) {
    values.insert(std::string(kLongest, c));
  }
  TextMaker maker(filter, random);
  for (int i = 0; i < kTexts; ++i) {
    const std::string text = maker.make();
    if (text.size() <= kLongest) {
      EXPECT_TRUE(filter_matches(filter, text)) << "\"" << text << "\" by " << filter;
    }
    values.insert(text.substr(0, kLongest));
    values.insert((text + std::string(kLongest, text.empty() ? ' ' : text.back())).substr(0, 255));
    values.insert(text.substr(0, std::min<size_t>(text.size() / 2, 254)) + "~");
  }
  return values;
}

using FilterMemoryTest = FilterDocumentTest;

TEST_P(FilterMemoryTest, EveryFilterKeepsTheBudget) {
  ASSERT_EQ(build_document().code, 0);
  const std::vector<std::string> filters = read_filters(path("out/regex_file"));
  EXPECT_GT(filters.size(), 100u);
  std::mt19937 random(1);  // The same values in every run.
  size_t most = 0;
  std::string dearest;
  for (const std::string &filter : filters) {
    ASSERT_LE(filter.size(), 1023u);
    ASSERT_EQ(filter.front(), '^') << filter;
    ASSERT_EQ(filter.back(), '$') << filter;
    for (const std::string &value : long_values(filter, random)) {
      const size_t used = memory_of(filter, value);
      dearest = used > most ? filter : dearest;
      most = std::max(most, used);
    }
  }
  EXPECT_LE(most, kBudget) << dearest;
  EXPECT_GT(most, kBudget / 2) << "nothing was counted";
  RecordProperty("most_bytes", std::to_string(most));
  RecordProperty("filters", std::to_string(filters.size()));
  RecordProperty("dearest", dearest);
}

INSTANTIATE_TEST_SUITE_P(Documents, FilterMemoryTest, testing::ValuesIn(filter_documents()),
                         filter_document_title);

}  // namespace
