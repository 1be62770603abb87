#include "platform/GlState.h"

#include <gtest/gtest.h>

TEST(ListsExtension, findsWholeNamesInAnyCase)
{
    EXPECT_TRUE(listsExtension("GL_A GL_B", "GL_A"));
    EXPECT_TRUE(listsExtension("GL_A  gl_b ", "GL_B"));
    EXPECT_FALSE(listsExtension("GL_ARB_texture_rectangle_more", "GL_ARB_texture_rectangle"));
    EXPECT_FALSE(listsExtension("", "GL_A"));
    EXPECT_FALSE(listsExtension(nullptr, "GL_A"));
}

TEST(ContextTexture, thereIsNoneWithoutAContext)
{
    EXPECT_EQ(contextTexture(), 0U);
    deleteContextTexture();
}
