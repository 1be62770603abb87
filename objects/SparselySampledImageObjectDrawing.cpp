#include "objects/SampleCross.h"
#include "objects/SparselySampledImageObject.h"
#include "platform/GlState.h"

void SparselySampledImageObject::render(GraphicsObjectRenderAdvisor *)
{
    const GlAttributeScope state(GL_CURRENT_BIT | GL_ENABLE_BIT);
    glDisable(GL_TEXTURE_2D);
    const LockedSamples shown = samples();
    const GlPrimitive lines(GL_LINES);
    for (const auto &[position, value] : *shown) {
        const SampleCross cross = sampleCross(position, value);
        glColor3dv(cross.colour.data());
        for (const auto &stroke : cross.strokes) {
            for (const Vector3 &end : stroke)
                glVertex3d(end.x, end.y, end.z);
        }
    }
}
