// SHA-256 against published values.
#include <mrl/Sha256.h>

#include <gtest/gtest.h>

namespace {

// FIPS 180-2, appendix B, and the empty message of NIST's test vectors.
TEST(Sha256, IsThatOfTheStandardsExamples) {
    EXPECT_EQ(mrl::sha256Of(""),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(mrl::sha256Of("abc"),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(mrl::sha256Of("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
}

// The lengths at which the padding takes one block more; values of sha256sum.
TEST(Sha256, IsRightWhereThePaddingJustFits) {
    EXPECT_EQ(mrl::sha256Of(std::string(55, 'x')),
              "d5e285683cd4efc02d021a5c62014694958901005d6f71e89e0989fac77e4072");
    EXPECT_EQ(mrl::sha256Of(std::string(56, 'x')),
              "04c26261370ee7541549d16dee320c723e3fd14671e66a099afe0a377c16888e");
    EXPECT_EQ(mrl::sha256Of(std::string(64, 'x')),
              "7ce100971f64e7001e8fe5a51973ecdfe1ced42befe7ee8d5fd6219506b5393c");
}

} // namespace
