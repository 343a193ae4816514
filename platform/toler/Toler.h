#pragma once
// Comparisons of factors and coefficients within a tolerance.
//
// gDefltTol is 1e-9, an absolute tolerance. Load factors and combination coefficients are
// entered with a few decimals and lie between about 1e-3 and 1e3; rounding noise of sums and
// products of such values stays below 1e-12, so 1e-9 treats them as equal, while any factor
// an engineer could type (0.001 and up) stays clearly different from zero.
class CToler {
public:
    static const double gDefltTol;

    /// |a - b| <= tol
    static bool Jednaki(double a, double b, double tol = gDefltTol);
    /// |a - b| > tol
    static bool Razliciti(double a, double b, double tol = gDefltTol);
    /// a > b + tol
    static bool Veci(double a, double b, double tol = gDefltTol);
    /// a < b - tol
    static bool Manji(double a, double b, double tol = gDefltTol);
    /// a >= b - tol
    static bool VeciJednak(double a, double b, double tol = gDefltTol);
    /// a <= b + tol
    static bool ManjiJednak(double a, double b, double tol = gDefltTol);
};
