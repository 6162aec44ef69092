// SPDX-License-Identifier: MIT
import { Resvg } from '@resvg/resvg-js';
import satori from 'satori';

import * as scene from './scene.mjs';

const dataUrl = (type, bytes) => `data:image/${type};base64,${Buffer.from(bytes).toString('base64')}`;
const pictures = Object.fromEntries(scene.pictures.map(({ address, data }) => [address, dataUrl('png', data)]));

const image = (style, src) => ({ type: 'img', props: { style, src, width: style.width, height: style.height } });

function element(node) {
  const { style } = node;
  switch (node.kind) {
    case 'box': return { type: 'div', props: { style, children: node.children.map(element) } };
    case 'text': return { type: 'div', props: { style, children: node.content } };
    case 'picture': return image(style, pictures[node.address]);
    case 'ring': return image(style, dataUrl('svg+xml', scene.ringSvg(node.value)));
  }
}

export async function draw(condition) {
  const { width, height, fonts } = scene;
  const svg = await satori(element(scene.tree(condition)), { width, height, fonts });
  const options = { fitTo: { mode: 'zoom', value: scene.scale }, font: { loadSystemFonts: false }, logLevel: 'off' };
  return new Resvg(svg, options).render().asPng();
}
