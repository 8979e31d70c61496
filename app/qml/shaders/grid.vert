in vec3 place;
uniform mat4 viewProjection;

void main()
{
    gl_Position = viewProjection * vec4(place, 1.0);
}
