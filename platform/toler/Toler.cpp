// Comparisons within an absolute tolerance.
#include "Toler.h"

#include <cmath>

const double CToler::gDefltTol = 1e-9;

bool CToler::Jednaki(double a, double b, double tol) {
    return std::fabs(a - b) <= tol;
}

bool CToler::Razliciti(double a, double b, double tol) {
    return std::fabs(a - b) > tol;
}

bool CToler::Veci(double a, double b, double tol) {
    return a > b + tol;
}

bool CToler::Manji(double a, double b, double tol) {
    return a < b - tol;
}

bool CToler::VeciJednak(double a, double b, double tol) {
    return a >= b - tol;
}

bool CToler::ManjiJednak(double a, double b, double tol) {
    return a <= b + tol;
}
