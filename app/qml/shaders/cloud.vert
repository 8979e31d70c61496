// Takes the 12-byte vertex apart: three 21-bit millimetre coordinates in two words, then the colour word.
in uint word0;
in uint word1;
in uint colorWord;

uniform mat4 viewProjection;
uniform float leastPixels;
uniform float extentPixels;
uniform vec2 range;
uniform float velocityLimit;
uniform vec4 highlight;
uniform int wordKind;
uniform sampler2D ramp;

flat out vec3 tint;

float halfValue(uint bits)
{
    float unit = (bits & 0x8000u) != 0u ? -1.0 : 1.0;
    uint exponent = (bits >> 10) & 31u;
    float mantissa = float(bits & 1023u);
    if (exponent == 0u)
        return unit * mantissa * exp2(-24.0);
    return unit * (1024.0 + mantissa) * exp2(float(exponent) - 25.0);
}

vec3 rampAt(float share, float row)
{
    // From the middle of the first texel to the middle of the last.
    return textureLod(ramp, vec2((clamp(share, 0.0, 1.0) * 255.0 + 0.5) / 256.0, row), 0.0).rgb;
}

vec3 attributeColor(uint bits)
{
    return rampAt((halfValue(bits) - range.x) / range.y, 0.25);
}

vec3 wordColor()
{
#ifdef VELOCITY_WORDS
    float brightness = halfValue(colorWord >> 16);
    if (brightness < 0.0)
        return attributeColor(colorWord & 0xffffu);
    float velocity = halfValue(colorWord & 0xffffu);
    return rampAt(0.5 + 0.5 * velocity / velocityLimit, 0.75) * (0.35 + 0.65 * min(brightness / 256.0, 1.0));
#else
    if (wordKind == 3)
        return vec3(float((colorWord >> 16) & 255u), float((colorWord >> 8) & 255u), float(colorWord & 255u)) / 255.0;
    return attributeColor(wordKind == 1 ? colorWord >> 16 : colorWord & 0xffffu);
#endif
}

void main()
{
    if (colorWord == 0xbc00bc00u) {
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
        gl_PointSize = 1.0;
        tint = vec3(0.0);
        return;
    }
    int x = int(word0 << 11) >> 11;
    int y = int(((word0 >> 21) | (word1 << 11)) << 11) >> 11;
    int z = int(word1 << 1) >> 11;
    gl_Position = viewProjection * vec4(vec3(float(x), float(y), float(z)) * 0.001, 1.0);
    bool highlighted = colorWord == 0x40004000u;
    float pixels = highlighted ? leastPixels * 1.5 : leastPixels;
    gl_PointSize = clamp(extentPixels / max(gl_Position.w, 0.001), pixels, 4.0 * pixels);
    tint = highlighted ? highlight.rgb : wordColor();
}
