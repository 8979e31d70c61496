flat in vec3 tint;
out vec4 color;

void main()
{
    color = vec4(tint, 1.0);
}
