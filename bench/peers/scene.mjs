// SPDX-License-Identifier: MIT

// The scene of document.json and model.json as a tree of boxes, texts and pictures, in points, for the peers to draw.
import fs from 'node:fs';

export const width = 338;
export const height = 158;
export const scale = 3;

const top = new URL('../../', import.meta.url);
const model = JSON.parse(fs.readFileSync(new URL('model.json', import.meta.url)));

const fontFolder = '/usr/share/fonts/opentype/inter/';
export const fonts = [
  { name: 'Inter', data: fs.readFileSync(fontFolder + 'Inter-Regular.otf'), weight: 400, style: 'normal' },
  { name: 'Inter', data: fs.readFileSync(fontFolder + 'Inter-SemiBold.otf'), weight: 600, style: 'normal' },
];

/** The name of an address's picture in a folder that `tavrin fetch` filled. */
const cacheName = address =>
  Buffer.from(address).reduce((hash, byte) => (Math.imul(hash, 33) + byte) >>> 0, 5381).toString(16);

export const pictures = model.hours.map(({ sky }) => ({
  address: sky,
  data: fs.readFileSync(new URL('examples/weather/pictures/' + cacheName(sky), top)),
}));

/** A ring as SVG, which both peers take for pictures. */
export function ringSvg(value) {
  const radius = 19.5;
  const length = 2 * Math.PI * radius;
  const circle = `circle cx="22" cy="22" r="${radius}" fill="none" stroke-width="5"`;
  return `<svg xmlns="http://www.w3.org/2000/svg" width="44" height="44" viewBox="0 0 44 44">
    <${circle} stroke="#ffffff" stroke-opacity="0.25"/>
    <${circle} stroke="#7FE0A8" stroke-linecap="round" transform="rotate(-90 22 22)"
      stroke-dasharray="${(length * value).toFixed(3)} ${length.toFixed(3)}"/></svg>`;
}

const box = (style, ...children) => ({ kind: 'box', style: { display: 'flex', ...style }, children });
const text = (style, content) => ({ kind: 'text', style: { whiteSpace: 'nowrap', ...style }, content });
const white = opacity => `rgba(255,255,255,${opacity})`;

const summary = condition => box({ flexDirection: 'column', alignItems: 'flex-start' },
  text({ fontSize: 17, lineHeight: '18px', fontWeight: 600 }, model.city),
  text({ fontSize: 44, lineHeight: '42px' }, model.temperature),
  text({ fontSize: 13, lineHeight: '15px', color: white(0.8) }, condition));

const ring = () => box(
  { position: 'relative', width: 44, height: 44, alignItems: 'center', justifyContent: 'center' },
  { kind: 'ring', value: model.ring, style: { position: 'absolute', left: 0, top: 0, width: 44, height: 44 } },
  text({ fontSize: 12, lineHeight: '14px' }, model.ringLabel));

const hour = ({ time, sky, temperature }) => box(
  { width: 51, height: 51, flexDirection: 'column', alignItems: 'center' },
  text({ fontSize: 11, lineHeight: '12px', color: white(0.7) }, time),
  { kind: 'picture', address: sky, style: { width: 24, height: 24 } },
  text({ fontSize: 13, lineHeight: '15px', fontWeight: 600 }, temperature));

const bar = () => box(
  { width: 306, height: 6, marginTop: 4, boxSizing: 'border-box', borderRadius: 3,
    border: `1px solid ${white(0.45)}`, backgroundColor: white(0.15) },
  box({ width: 304 * model.bar, height: 4, borderRadius: 2, backgroundColor: white(0.9) }));

/** The scene with the condition that is given, or the model's. */
export const tree = (condition = model.condition) => box(
  { width, height, flexDirection: 'column', padding: '10px 16px 9px 16px', borderRadius: 22, boxSizing: 'border-box',
    backgroundImage: 'linear-gradient(115.054deg, #1E3C72 0%, #2A5298 100%)',  // from corner to corner
    color: '#ffffff', fontFamily: 'Inter', fontWeight: 400 },
  box({ width: 306, height: 75, justifyContent: 'space-between', alignItems: 'center' }, summary(condition), ring()),
  box({ width: 306, height: 51, marginTop: 3 }, ...model.hours.map(hour)),
  bar());
