// Tolerance comparisons of factors and coefficients.
#include "toler/Toler.h"

#include <gtest/gtest.h>

TEST(Toler, ComparisonsRespectTheToleranceBand) {
    // The default tolerance absorbs rounding noise but not the smallest typed factor.
    EXPECT_TRUE(CToler::Jednaki(0.1 + 0.2, 0.3));
    EXPECT_FALSE(CToler::Razliciti(1.35 * 3.0, 4.05));
    EXPECT_TRUE(CToler::Razliciti(0.001, 0.0));
    EXPECT_FALSE(CToler::Jednaki(1000.0, 1000.0 + 5e-9));
    EXPECT_FALSE(CToler::Veci(1.0 + 1e-12, 1.0));
    const double tol = 0.01;
    EXPECT_FALSE(CToler::Veci(1.005, 1.0, tol));
    EXPECT_TRUE(CToler::Veci(1.02, 1.0, tol));
    EXPECT_FALSE(CToler::Manji(0.995, 1.0, tol));
    EXPECT_TRUE(CToler::Manji(0.98, 1.0, tol));
    EXPECT_TRUE(CToler::VeciJednak(0.995, 1.0, tol));
    EXPECT_FALSE(CToler::VeciJednak(0.98, 1.0, tol));
    EXPECT_TRUE(CToler::ManjiJednak(1.005, 1.0, tol));
    EXPECT_FALSE(CToler::ManjiJednak(1.02, 1.0, tol));
}
