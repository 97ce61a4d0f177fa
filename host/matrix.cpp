#include "host/matrix.h"

#include <cmath>

#include "host/numeric.h"

namespace hublet {

Matrix43 operator-(const Matrix43& a, const Matrix43& b) {
  Matrix43 r{};
  for (int row = 0; row < 4; ++row)
    for (int col = 0; col < 3; ++col) r.m[row][col] = a.m[row][col] - b.m[row][col];
  return r;
}

bool operator==(const Matrix43& a, const Matrix43& b) {
  for (int row = 0; row < 4; ++row)
    for (int col = 0; col < 3; ++col)
      if (a.m[row][col] != b.m[row][col]) return false;
  return true;
}

Matrix43 IdentityMatrix() {
  return Matrix43{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}}};
}

Matrix43 Inverse(const Matrix43& matrix) {
  const auto& a = matrix.m;
  // Cofactors of the 3x3 axis block, computed in double for a stable determinant.
  const double c00 = double(a[1][1]) * a[2][2] - double(a[1][2]) * a[2][1];
  const double c01 = double(a[1][2]) * a[2][0] - double(a[1][0]) * a[2][2];
  const double c02 = double(a[1][0]) * a[2][1] - double(a[1][1]) * a[2][0];
  const double det = a[0][0] * c00 + a[0][1] * c01 + a[0][2] * c02;
  if (det == 0.0 || !std::isfinite(det)) return IdentityMatrix();

  double inv[3][3];
  inv[0][0] = c00 / det;
  inv[1][0] = c01 / det;
  inv[2][0] = c02 / det;
  inv[0][1] = (double(a[0][2]) * a[2][1] - double(a[0][1]) * a[2][2]) / det;
  inv[1][1] = (double(a[0][0]) * a[2][2] - double(a[0][2]) * a[2][0]) / det;
  inv[2][1] = (double(a[0][1]) * a[2][0] - double(a[0][0]) * a[2][1]) / det;
  inv[0][2] = (double(a[0][1]) * a[1][2] - double(a[0][2]) * a[1][1]) / det;
  inv[1][2] = (double(a[0][2]) * a[1][0] - double(a[0][0]) * a[1][2]) / det;
  inv[2][2] = (double(a[0][0]) * a[1][1] - double(a[0][1]) * a[1][0]) / det;

  Matrix43 r{};
  for (int row = 0; row < 3; ++row)
    for (int col = 0; col < 3; ++col) r.m[row][col] = NarrowToFloat(inv[row][col]);
  // p = (p' - t) * A^-1, so the inverse's translation is -t * A^-1.
  for (int col = 0; col < 3; ++col) {
    double sum = 0.0;
    for (int k = 0; k < 3; ++k) sum -= double(a[3][k]) * inv[k][col];
    r.m[3][col] = NarrowToFloat(sum);
  }
  return r;
}

}  // namespace hublet
