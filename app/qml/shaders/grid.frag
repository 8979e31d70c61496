uniform vec4 tint;
out vec4 color;

void main()
{
    color = tint;
}
