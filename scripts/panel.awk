# A display by its description: reads a list of patches, a .ti1 file, and prints their XYZ on it as a .ti3 file.
#     chromaticities   x y of red, green, blue, white, black
#     black            luminance of black; that of white is 100
#     exponents bends  of red, green, blue: the tone curve is (v + bend sin(2 pi v))^exponent
function tone(channel, v) { return (v + bend[channel] * sin(6.283185307179586 * v)) ^ exponent[channel] }
function det(ax, ay, az, bx, by, bz, cx, cy, cz) {
    return ax * (by * cz - bz * cy) - bx * (ay * cz - az * cy) + cx * (ay * bz - az * by)
}
BEGIN {
    split(chromaticities, c)
    split(exponents, exponent)
    split(bends, bend)
    for (i = 0; i < 5; ++i) {
        X[i] = c[2 * i + 1] / c[2 * i + 2]
        Z[i] = (1 - c[2 * i + 1]) / c[2 * i + 2] - 1
    }
    all = det(X[0], 1, Z[0], X[1], 1, Z[1], X[2], 1, Z[2])
    Y[0] = (100 - black) * det(X[3], 1, Z[3], X[1], 1, Z[1], X[2], 1, Z[2]) / all
    Y[1] = (100 - black) * det(X[0], 1, Z[0], X[3], 1, Z[3], X[2], 1, Z[2]) / all
    Y[2] = 100 - black - Y[0] - Y[1]
}
/^CTI1/ { print "CTI3"; next }
/^COLOR_REP/ { print "COLOR_REP \"RGB_XYZ\"\nDEVICE_CLASS \"DISPLAY\""; next }
/^NUMBER_OF_SETS/ { inData = 1 }
/^END_DATA$/ { print; exit }
inData && NF >= 4 {
    r = tone(1, $2 / 100) * Y[0]; g = tone(2, $3 / 100) * Y[1]; b = tone(3, $4 / 100) * Y[2]
    print $1, $2, $3, $4, r * X[0] + g * X[1] + b * X[2] + black * X[4], r + g + b + black, \
        r * Z[0] + g * Z[1] + b * Z[2] + black * Z[4]
    next
}
{ print }
