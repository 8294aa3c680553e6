// What a member table may not say: compiled once per case, of which all but the first have to be
// refused with the words behind the name of the case. CMakeLists.txt reads both from these lines.
#include "automation/member_table.hpp"

using namespace vqmath63::automation;

struct Other {
  double Area() const { return 0; }
};

struct Curve {
  double get_Scale() const { return 0; }
  void put_Scale(double) {}
  double Area() const { return 0; }
  double Length() const { return 0; }
  void Ends(double, double&, bool&) {}
};

inline constexpr auto kCurve = table<Curve>(
    "Curve", "", {}, {},
#if CASE == 0  // good_rows
    get<&Curve::get_Scale>(1, "Scale", {}, ""), let<&Curve::put_Scale>(1, "Scale", {arg("x")}, ""),
    method<&Curve::Ends>(3, "Ends", {arg("x"), out("y"), out("qOK")}, ""),
#elif CASE == 1  // another_members_pointer: the_name_of_a_row_is_not_that_of_its_member
    method<&Curve::Length>(3, "Area", {}, ""),
#elif CASE == 2  // letter_case_of_a_name: the_name_of_a_row_is_not_that_of_its_member
    method<&Curve::Area>(3, "area", {}, ""),
#elif CASE == 3  // prefix_of_a_method: the_name_of_a_row_is_not_that_of_its_member
    method<&Curve::get_Scale>(3, "Scale", {}, ""),
#elif CASE == 4  // doubled_row: two_rows_have_the_same_name_and_kind
    method<&Curve::Length>(2, "Length", {}, ""),
#elif CASE == 5  // doubled_id: two_names_have_the_same_id
    method<&Curve::Area>(2, "Area", {}, ""),
#elif CASE == 6  // property_of_two_ids: one_name_has_two_ids
    get<&Curve::get_Scale>(1, "Scale", {}, ""), let<&Curve::put_Scale>(3, "Scale", {arg("x")}, ""),
#elif CASE == 7  // row_of_another_class: every row is of a member of the table's class
    method<&Other::Area>(3, "Area", {}, ""),
#elif CASE == 8  // forgotten_argument: a_row_leaves_an_argument_of_its_member_out
    method<&Curve::Ends>(3, "Ends", {arg("x"), arg("y")}, ""),
#elif CASE == 9  // output_by_value: an_argument_that_is_written_is_no_reference
    method<&Curve::Ends>(3, "Ends", {out("x"), out("y"), out("qOK")}, ""),
#endif
    method<&Curve::Length>(2, "Length", {}, ""));
