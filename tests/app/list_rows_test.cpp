#include "app/list_rows.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <utility>

#include "app/form1.h"
#include "tests/core/test_melody.h"
#include "tests/support/test_program.h"

namespace {

std::size_t allocated = 0;  // bytes allocated in total, freed ones included

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  allocated += size;
  return std::malloc(size == 0 ? 1 : size);
}
void* operator new(std::size_t size) {
  if (void* place = operator new(size, std::nothrow)) {
    return place;
  }
  throw std::bad_alloc();
}
// Not inlined, because the compiler would warn about the mismatch of "new" and "free".
[[gnu::noinline]] void operator delete(void* place) noexcept {
  std::free(place);
}
[[gnu::noinline]] void operator delete(void* place, std::size_t) noexcept {
  std::free(place);
}

namespace tonadex::app::list_rows_test {

TEST(ListRows, ACopyIsSharedUntilOneOfThemChanges) {
  ListRows rows = {{"uno", 1}, {"", 2, true}};
  const ListRows copy = rows;
  EXPECT_EQ(copy, rows);
  EXPECT_EQ(copy[0].text.data(), rows[0].text.data()) << "not copied";
  rows.push_back(rows[0]);
  rows.SetLastData(3);
  EXPECT_EQ(rows, (ListRows{{"uno", 1}, {"", 2, true}, {"uno", 3}}));
  EXPECT_EQ(copy, (ListRows{{"uno", 1}, {"", 2, true}}));
  EXPECT_NE(copy, rows);
  rows.clear();
  EXPECT_EQ(rows, ListRows());
  EXPECT_EQ(copy.size(), 2u);
}

// Reply and rows together take at most four times the reply's size, even if records are short.
TEST(ListRows, AListingNeedsThreeTimesItsSizeBesides) {
  for (const std::string record : {")498", "a (b.c)498", "Melodia (melodia.120)498"}) {
    test::TestProgram test;
    Form1 form(test.program);
    std::string reply = test::Repeated(record, 100'000);
    const std::size_t size = reply.size();
    test.http.replies.emplace_back(std::move(reply));
    const std::size_t before = allocated;
    form.picabuscar_Click();
    EXPECT_LE(allocated - before, 3 * size + 10'000) << record;
    EXPECT_EQ(form.List1.rows.size(), 100'000u);
    EXPECT_EQ(form.Text1.text.capacity(), std::string().capacity()) << "the reply is kept";
  }
}

}  // namespace tonadex::app::list_rows_test
