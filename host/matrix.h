#pragma once
// A 4x3 affine matrix in the host's layout: rows 0-2 are the X, Y and Z axes, row 3 is
// the translation, and points are row vectors (p * M).

namespace hublet {

struct Matrix43 {
  float m[4][3];
};

Matrix43 operator-(const Matrix43& a, const Matrix43& b);
bool operator==(const Matrix43& a, const Matrix43& b);
inline bool operator!=(const Matrix43& a, const Matrix43& b) { return !(a == b); }

Matrix43 IdentityMatrix();

// The affine inverse. A singular matrix (no inverse exists) yields the identity, so that
// no division by zero reaches the host.
Matrix43 Inverse(const Matrix43& matrix);

}  // namespace hublet
