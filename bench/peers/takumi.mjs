// SPDX-License-Identifier: MIT
import { Renderer } from '@takumi-rs/core';

import * as scene from './scene.mjs';

const renderer = new Renderer();
for (const font of scene.fonts) await renderer.registerFont(font);

const options = {
  width: scene.width * scene.scale,
  height: scene.height * scene.scale,
  devicePixelRatio: scene.scale,
  images: scene.pictures.map(({ address, data }) => ({ src: address, data })),
  fontFamilies: ['Inter'],
  format: 'png',
};

const image = (style, src) => ({ type: 'image', style, src, width: style.width, height: style.height });

function element(node) {
  const { style } = node;
  switch (node.kind) {
    case 'box': return { type: 'container', style, children: node.children.map(element) };
    case 'text': return { type: 'text', style, text: node.content };
    case 'picture': return image(style, node.address);
    case 'ring': return image(style, scene.ringSvg(node.value));
  }
}

export const draw = condition => renderer.render(element(scene.tree(condition)), options);
