/// @file
/// Native objects owned by values, names of members, and the kinds of values.

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "tests/support/host_fixture.h"

namespace {

class Native : public TarnAss {
 public:
  explicit Native(int& live) : live_(live) { ++live_; }
  ~Native() override { --live_; }
  Native(const Native&) = delete;
  Native& operator=(const Native&) = delete;

 private:
  int& live_;
};

class OwnedObjectTest : public HostTest {
 protected:
  int live = 0;
};

TEST_F(OwnedObjectTest, IsANativePointerThatTheValueDeletes) {
  auto* native = new Native(live);
  {
    Variable value;
    value.SetOwnedObject(native);
    EXPECT_EQ(value.TypeWord(), VARTYPE_CPP_POINTER);
    EXPECT_EQ(value.GetCppPointer(), static_cast<TarnAss*>(native));
    EXPECT_EQ(live, 1);
  }
  EXPECT_EQ(live, 0);
}

TEST_F(OwnedObjectTest, IsSharedByCopiesAndDeletedByTheLast) {
  Variable first;
  first.SetOwnedObject(new Native(live));
  Variable second(first);
  Variable third;
  third = second;
  EXPECT_EQ(third.GetCppPointer(), first.GetCppPointer());
  first.Clear();
  second = 5.0;
  EXPECT_EQ(live, 1);
  EXPECT_NE(third.GetCppPointer(), nullptr);
  third = third;
  EXPECT_EQ(live, 1);
  third = std::int64_t{1};
  EXPECT_EQ(live, 0);
}

TEST_F(OwnedObjectTest, EndsWithEveryWayOfReplacingTheValue) {
  Variable other(7);
  Variable value;
  const auto own = [&] { value.SetOwnedObject(new Native(live)); };
  own();
  own();
  EXPECT_EQ(live, 1) << "a new object replaces the old one";
  value.SetCppPointer(&other);
  EXPECT_EQ(live, 0);
  EXPECT_EQ(value.GetCppPointer(), &other) << "a plain pointer is not owned";
  own();
  value.Init(VARTYPE_ARRAY, 2);
  EXPECT_EQ(live, 0);
  own();
  EXPECT_EQ(live, 1) << "an array made room for it";
  value = &other;
  EXPECT_EQ(live, 0) << "a reference";
  value.Clear();
  own();
  value = other;
  EXPECT_EQ(live, 0);
  own();
  value.SetOwnedObject(nullptr);
  EXPECT_EQ(live, 0);
  EXPECT_EQ(value.TypeWord(), VARTYPE_EMPTY);
}

TEST_F(OwnedObjectTest, IsStoredInTheValueThatAReferenceRefersTo) {
  Variable value;
  Variable reference;
  reference = &value;
  reference.SetOwnedObject(new Native(live));
  EXPECT_EQ(value.TypeWord(), VARTYPE_CPP_POINTER);
  EXPECT_EQ(reference.GetCppPointer(), value.GetCppPointer());
  reference.Clear();
  EXPECT_EQ(live, 1);
  value.Clear();
  EXPECT_EQ(live, 0);
}

TEST_F(OwnedObjectTest, LivesInArraysObjectsAndTheirCopies) {
  const std::int64_t blocks = EmbeddedHost::LiveBlockCount();
  {
    Variable array(VARTYPE_ARRAY, 2);
    ASSERT_NE(host.GetProcessor().MakeInstance(array[0], "Record", nullptr, 0), 0);
    array[0]("native").SetOwnedObject(new Native(live));
    array[1] = array[0]("native");
    const Variable copy(array);
    array.Clear();
    EXPECT_EQ(live, 1);
    Variable conjugate = copy.Conjugate();
    EXPECT_NE(conjugate[1].GetCppPointer(), nullptr);
  }
  EXPECT_EQ(live, 0);
  EXPECT_EQ(EmbeddedHost::LiveBlockCount(), blocks);
}

TEST_F(OwnedObjectTest, IsDeletedAtOnceWhenTheHeapRefuses) {
  Variable value(3);
  host.SetHeapFailure([](std::int64_t) { return true; });
  value.SetOwnedObject(new Native(live));
  host.SetHeapFailure({});
  EXPECT_EQ(live, 0);
  EXPECT_EQ(value.TypeWord(), VARTYPE_EMPTY);
  EXPECT_EQ(value.GetCppPointer(), nullptr);
}

TEST_F(OwnedObjectTest, NeedsNoMemoryToBeCopied) {
  Variable value;
  value.SetOwnedObject(new Native(live));
  host.SetHeapFailure([](std::int64_t) { return true; });
  const Variable copy(value);
  host.SetHeapFailure({});
  EXPECT_EQ(copy.GetCppPointer(), value.GetCppPointer());
}

TEST(OwnedObject, MayOutliveTheHost) {
  int live = 0;
  Variable value;
  auto host = std::make_unique<EmbeddedHost>();
  value.SetOwnedObject(new Native(live));
  host.reset();
  EXPECT_EQ(live, 1);
  value.Clear();
  EXPECT_EQ(live, 0);
}

/// A destructor that ends other values.
class Nested : public Native {
 public:
  Nested(int& live, const Variable& held) : Native(live), held_(held) {}

 private:
  Variable held_;
};

TEST_F(OwnedObjectTest, MayItselfHoldValuesThatOwnObjects) {
  Variable value;
  value.SetOwnedObject(new Native(live));
  for (int i = 0; i < 100; ++i) {
    Variable outer;
    outer.SetOwnedObject(new Nested(live, value));
    value = outer;
  }
  EXPECT_EQ(live, 101);
  value.Clear();
  EXPECT_EQ(live, 0);
}

// Members that scripts do not see ----------------------------------------------------------------

/// Runs scripts on the global `o`, a record of a native object and two numbers.
class HiddenMemberTest : public OwnedObjectTest {
 protected:
  HiddenMemberTest() {
    Variable record;
    EXPECT_NE(host.GetProcessor().MakeInstance(record, "Record", nullptr, 0), 0);
    record("before") = 1;
    record("native").SetOwnedObject(new Native(live));
    record("after") = 2;
    VarRegister argument;
    argument.PointTo(&record);
    Run("function keep(record) o = record:copy() end");
    Variable keep = Value("return keep");
    VarRegister result;
    EXPECT_NE(host.GetProcessor().RunFunctionAsIs(result, keep, &argument, 1), 0);
  }
};

TEST_F(HiddenMemberTest, PairsLeavesItOut) {
  Run("names = '' for name, value in pairs(o) do names = names .. name .. value .. ' ' end");
  EXPECT_EQ(Text("names"), "before1 after2 ");
}

TEST_F(HiddenMemberTest, ReadsAsNothing) { EXPECT_EQ(Text("o.native"), "nil"); }

TEST_F(HiddenMemberTest, IsNotPartOfTheText) {
  EXPECT_EQ(Text("o"), "Record(before = 1, after = 2)");
}

TEST_F(HiddenMemberTest, IsNotCompleted) {
  EXPECT_EQ(host.Complete("o.na"), std::vector<std::string>{});
  EXPECT_EQ(host.Complete("o.be"), std::vector<std::string>{"o.before"});
}

TEST_F(HiddenMemberTest, CannotBeSet) {
  for (const char* value : {"nil", "7", "'x'", "{1}"}) {
    const HostError error = Failure(std::string("o.native = ") + value);
    EXPECT_EQ(error.number, 3);
    EXPECT_EQ(error.message, "the member \"native\" of an object of class Record cannot be set");
  }
  EXPECT_EQ(live, 1);
  Run("o.after = 3");
  EXPECT_EQ(Number("return o.after"), 3.0);
}

TEST_F(HiddenMemberTest, GoesWithCopies) {
  Run("local copy = o:copy() o = nil collectgarbage() kept = copy");
  EXPECT_EQ(live, 1);
  Run("kept = nil collectgarbage() collectgarbage()");
  EXPECT_EQ(live, 0);
}

// Members by index --------------------------------------------------------------------------------

TEST_F(OwnedObjectTest, MembersHaveNamesInTheOrderOfTheirCreation) {
  Variable value;
  ASSERT_NE(host.GetProcessor().MakeInstance(value, "Record", nullptr, 0), 0);
  EXPECT_EQ(value.GetMemberName(0), nullptr);
  for (const char* name : {"zeta", "alpha", "Mitte"}) value(name) = 1;
  value("zeta") = 2;
  EXPECT_STREQ(value.GetMemberName(0), "zeta");
  EXPECT_STREQ(value.GetMemberName(1), "alpha");
  EXPECT_STREQ(value.GetMemberName(2), "Mitte");
  EXPECT_EQ(value.GetMemberName(3), nullptr);
  EXPECT_EQ(value.GetMemberName(-1), nullptr);
  Variable reference;
  reference = &value;
  const Variable copy(value);
  EXPECT_STREQ(reference.GetMemberName(2), "Mitte");
  EXPECT_STREQ(copy.GetMemberName(1), "alpha");
  const char* const kept = value.GetMemberName(0);
  value.Clear();
  EXPECT_STREQ(kept, "zeta") << "the text stays valid";
}

TEST_F(OwnedObjectTest, OtherValuesHaveNoMembers) {
  EXPECT_EQ(Variable().GetMemberName(0), nullptr);
  EXPECT_EQ(Variable(5).GetMemberName(0), nullptr);
  EXPECT_EQ(Variable(VARTYPE_ARRAY, 3).GetMemberName(0), nullptr);
}

// Kinds -------------------------------------------------------------------------------------------

TEST_F(OwnedObjectTest, EveryKindOfValueHasAName) {
  EXPECT_STREQ(Variable().KindName(), "nothing");
  EXPECT_STREQ(Variable(1).KindName(), "number");
  EXPECT_STREQ(Value("return 1.5").KindName(), "number");
  EXPECT_STREQ(Value("return 'x'").KindName(), "text");
  EXPECT_STREQ(Value("return print").KindName(), "function");
  EXPECT_STREQ(Value("return {1}").KindName(), "array");
  EXPECT_STREQ(Value("return complex(1, 2)").KindName(), "complex");
  EXPECT_STREQ(Variable(VARTYPE_BYTES, 4).KindName(), "bytes");
  EXPECT_STREQ(Value("return MVector(2)").KindName(), "MVector");
  EXPECT_STREQ(Value("return Record()").KindName(), "Record");
  Variable pointer;
  pointer.SetCppPointer(&pointer);
  EXPECT_STREQ(pointer.KindName(), "pointer");
  Variable reference;
  reference = &pointer;
  EXPECT_STREQ(reference.KindName(), "pointer");
}

}  // namespace
