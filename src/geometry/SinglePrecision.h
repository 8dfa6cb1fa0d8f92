#pragma once

// v rounded to single precision and widened back. The volatile store keeps the rounding: GCC 12's SLP
// vectorizer drops a plain float cast of a double expression when two such casts sit side by side.
inline double toSingle(double v) {
    volatile float f = static_cast<float>(v);
    return f;
}
